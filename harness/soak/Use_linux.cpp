#include "harness/soak/Use.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

Use Use::of(qint64 processId, const QString &temporaryFolder)
{
    const QString process = QStringLiteral("/proc/%1/").arg(processId);
    const auto countIn = [&](const char *folder) {
        const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
        return static_cast<int>(QDir(process + QLatin1String(folder)).entryList(all).size());
    };
    Use use;
    use.handles = countIn("fd");
    use.threads = countIn("task");
    QFile memory(process + QLatin1String("smaps_rollup"));
    if (memory.open(QIODevice::ReadOnly)) {
        const QByteArray text = memory.readAll();
        const int at = text.indexOf("\nPrivate_Dirty:");
        use.kibibytes = text.mid(at + 15, text.indexOf('\n', at + 1) - at - 15)
                            .simplified()
                            .split(' ')
                            .value(0)
                            .toLongLong();
    }
    QDirIterator files(temporaryFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        ++use.files;
    }
    return use;
}
