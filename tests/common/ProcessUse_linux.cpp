#include "tests/common/ProcessUse.h"

#include <QDir>
#include <QFile>
#include <QString>

ProcessUse ProcessUse::of(qint64 id)
{
    const QString folder = id ? QStringLiteral("/proc/%1").arg(id) : QStringLiteral("/proc/self");
    QFile file(folder + QLatin1String("/status"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString status = QString::fromLatin1(file.readAll());
    file.close();
    const auto field = [&status](const char *name) {
        const QString rest = status.section(QLatin1Char('\n') + QLatin1String(name) + QLatin1Char(':'), 1);
        return rest.section(QLatin1Char('\n'), 0, 0).remove(QLatin1String("kB")).trimmed().toInt();
    };
    ProcessUse use;
    use.descriptors = QDir(folder + QLatin1String("/fd"))
                          .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                          .size();
    use.threads = field("Threads");
    use.residentKilobytes = field("VmRSS");
    use.peakKilobytes = field("VmHWM");
    return use;
}
