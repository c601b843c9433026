#pragma once

#include <QDir>
#include <QFile>
#include <QString>

/// What a process holds of the system's resources, as Linux tells it.
struct ProcessUse
{
    int descriptors = 0;
    int threads = 0;
    /// Memory that it holds now, and the most that it ever held.
    int residentKilobytes = 0;
    int peakKilobytes = 0;

    /// Of the process `id`, by default of this one. All 0 when there is none.
    static ProcessUse of(qint64 id = 0)
    {
        const QString folder = id ? QStringLiteral("/proc/%1").arg(id) : QStringLiteral("/proc/self");
        QFile file(folder + QLatin1String("/status"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString status = QString::fromLatin1(file.readAll());
        file.close();
        const auto field = [&status](const char *name) {
            const QString rest =
                status.section(QLatin1Char('\n') + QLatin1String(name) + QLatin1Char(':'), 1);
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

    /// Memory in a build with a sanitizer says nothing: what was freed is kept for a while.
    static constexpr bool memoryTells()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }
};
