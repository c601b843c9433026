#include "tests/cli/EventValidation.h"

#include "harness/process/Polling.h"

#include <QProcess>
#include <QTemporaryFile>

QString EventValidation::problemsIn(const QByteArray &lines)
{
    QTemporaryFile file;
    if (!file.open() || file.write(lines) != lines.size() || !file.flush())
        return QStringLiteral("The lines could not be written to a file for the validator.");
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(QStringLiteral(EVENT_VALIDATOR), {QStringLiteral(EVENT_SCHEMA), file.fileName()});
    if (!waitForStart(validator) || !waitForEnd(validator))
        return QStringLiteral("The validator did not run: ") + validator.errorString();
    if (validator.exitStatus() == QProcess::NormalExit && validator.exitCode() == 0)
        return {};
    return QStringLiteral("The validator says:\n") + QString::fromUtf8(validator.readAll());
}
