#include "tests/report/ReportValidation.h"

#include "harness/process/Polling.h"

#include <QProcess>

QString ReportValidation::problemsIn(const QString &file)
{
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(QStringLiteral(REPORT_VALIDATOR), {QStringLiteral(REPORT_SCHEMA), file});
    if (!waitForStart(validator) || !waitForEnd(validator))
        return QStringLiteral("The validator did not run: ") + validator.errorString();
    if (validator.exitStatus() == QProcess::NormalExit && validator.exitCode() == 0)
        return {};
    return QStringLiteral("The validator says:\n") + QString::fromUtf8(validator.readAll());
}
