#pragma once

#include "driver/DriverLog.h"
#include "driver/DriverSystem.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <functional>

/// A fake Windows and log, which records all steps and messages in order. Initially no driver is loaded, none
/// of the files exists, and all steps succeed.
class FakeDriverSystem : public DriverSystem, public DriverLog
{
public:
    /// The recorded events: "shown …", "logged …", "remove …", "run …|…", "copy … > …", "inf …", "create … as
    /// …", "start …".
    QStringList events;

    bool listSucceeds = true;
    /// The names of the loaded drivers; an empty name cannot be read.
    QStringList drivers;
    /// The result of the list call, if it is not the size of `drivers`.
    std::optional<quint32> reportedBytes;
    QString ownFolder = QStringLiteral("C:/App");
    QString windir = QStringLiteral("C:\\Windows");
    QSet<QString> files;
    /// Destinations that cannot be written.
    QSet<QString> refusedCopies;
    bool catalogToolMakesCatalog = true;
    ToolRun::End catalogToolEnd = ToolRun::Finished;
    ToolRun::End infToolEnd = ToolRun::Finished;
    /// Prints the output of pnputil, piece by piece.
    std::function<void(const ToolListener &)> infToolPrints;
    InfCopy infCopy{true, 0};
    QSet<QString> services;
    bool startWorks = true;
    /// Called during each event, which is then the last of `events`.
    std::function<void()> whenHappened;

    LoadedDrivers loadedDrivers() override
    {
        LoadedDrivers listed;
        listed.succeeded = listSucceeds;
        listed.bytes = reportedBytes.value_or(static_cast<quint32>(drivers.size() * 8));
        for (int i = 0; i < addressRoom; ++i)
            listed.addresses.append(i < drivers.size() ? baseAddress + static_cast<quint64>(i) : 0);
        return listed;
    }
    std::optional<QString> driverBaseName(quint64 address) override
    {
        const QString name = drivers.value(static_cast<int>(address - baseAddress));
        return name.isEmpty() ? std::nullopt : std::optional<QString>(name);
    }

    QString applicationFolder() override { return ownFolder; }
    QString environmentVariable(const QString &name) override
    {
        return name == QLatin1String("WINDIR") ? windir : QString();
    }

    bool exists(const QString &path) override { return files.contains(path); }
    bool copy(const QString &source, const QString &destination) override
    {
        note("copy", source + QLatin1String(" > ") + destination);
        if (!files.contains(source) || refusedCopies.contains(destination))
            return false;
        files.insert(destination);
        return true;
    }
    bool remove(const QString &path) override
    {
        note("remove", path);
        return files.remove(path);
    }

    ToolRun runTool(const QString &program, const QStringList &arguments,
                    const ToolListener &listener) override
    {
        note("run", (QStringList{program} + arguments).join(QLatin1Char('|')));
        ToolRun run;
        if (program == QLatin1String("pnputil")) {
            run.end = infToolEnd;
            if (infToolPrints)
                infToolPrints(listener);
        } else {
            run.end = catalogToolEnd;
            if (catalogToolMakesCatalog)
                files.insert(arguments.value(1) + QStringLiteral("/Artinchip_SoC.cat"));
        }
        return run;
    }

    InfCopy copyOemInf(const QString &infPath) override
    {
        note("inf", infPath);
        return infCopy;
    }
    bool createService(const QString &binaryPath, const QString &name) override
    {
        note("create", binaryPath + QLatin1String(" as ") + name);
        if (services.contains(name))
            return false;
        services.insert(name);
        return true;
    }
    bool startService(const QString &name) override
    {
        note("start", name);
        return startWorks && services.contains(name);
    }

    void showLine(const QString &line) override { note("shown", line); }
    void logLine(const QString &line) override { note("logged", line); }

    /// Returns the events of one kind, without the name of the kind.
    QStringList of(const char *kind) const
    {
        const QString word = QLatin1String(kind) + QLatin1Char(' ');
        QStringList found;
        for (const QString &event : events) {
            if (event.startsWith(word))
                found.append(event.mid(word.size()));
        }
        return found;
    }
    bool has(const char *event) const { return events.contains(QString::fromUtf8(event)); }

private:
    static constexpr quint64 baseAddress = 0xFFFFF80000000000;

    void note(const char *kind, const QString &what)
    {
        events.append(QLatin1String(kind) + QLatin1Char(' ') + what);
        if (whenHappened)
            whenHappened();
    }
};
