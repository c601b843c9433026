#pragma once

#include "support/ToolRun.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What the driver check needs of Windows. Paths have "/" between their parts unless said otherwise.
/// GUI thread.
class DriverSystem
{
public:
    /// What the system answered when asked for the load addresses of all kernel drivers.
    struct LoadedDrivers
    {
        bool succeeded = false;
        /// The size of the whole list, which may be more than what was asked for.
        quint32 bytes = 0;
        /// As many as there was room for; the rest are 0.
        QVector<quint64> addresses;
    };
    /// How the system took a driver's setup information.
    struct InfCopy
    {
        bool succeeded = false;
        /// Of Windows; 0 when it succeeded.
        quint32 errorCode = 0;
    };
    static constexpr int addressRoom = 1024;

    virtual ~DriverSystem() = default;

    /// Asks with room for `addressRoom` addresses of eight bytes.
    virtual LoadedDrivers loadedDrivers() = 0;
    /// None when the name cannot be read.
    virtual std::optional<QString> driverBaseName(quint64 address) = 0;

    /// The folder of the running executable.
    virtual QString applicationFolder() = 0;
    /// A variable of the system environment; empty when it is not set.
    virtual QString environmentVariable(const QString &name) = 0;

    virtual bool exists(const QString &path) = 0;
    /// Never overwrites. The destination appears whole or not at all.
    virtual bool copy(const QString &source, const QString &destination) = 0;
    virtual bool remove(const QString &path) = 0;

    /// Waits for the tool's end, at most for the limit of all driver tools (30 s).
    virtual ToolRun runTool(const QString &program, const QStringList &arguments,
                            const ToolListener &listener) = 0;

    virtual InfCopy copyOemInf(const QString &infPath) = 0;
    /// Registers a kernel driver that starts on demand. `binaryPath` has "\" between its parts. Fails
    /// also when there is such a service already.
    virtual bool createService(const QString &binaryPath, const QString &name) = 0;
    /// Fails also when the service runs already.
    virtual bool startService(const QString &name) = 0;
};
