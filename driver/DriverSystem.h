#pragma once

#include "support/process/ToolRun.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// The interface to the functions of Windows that the driver check uses. Paths use "/" unless stated
/// otherwise. GUI thread only.
class DriverSystem
{
public:
    /// The load addresses of all kernel drivers, as the system returns them.
    struct LoadedDrivers
    {
        bool succeeded = false;
        /// The size of the whole list, which may be larger than the buffer.
        quint32 bytes = 0;
        /// The buffer; unused addresses are 0.
        QVector<quint64> addresses;
    };
    /// The result of copying a driver's setup information.
    struct InfCopy
    {
        bool succeeded = false;
        /// The error code of Windows; 0 on success.
        quint32 errorCode = 0;
    };
    static constexpr int addressRoom = 1024;

    virtual ~DriverSystem() = default;

    /// Lists the drivers into a buffer for `addressRoom` addresses of eight bytes.
    virtual LoadedDrivers loadedDrivers() = 0;
    /// Returns nothing if the name cannot be read.
    virtual std::optional<QString> driverBaseName(quint64 address) = 0;

    /// Returns the folder of the running executable.
    virtual QString applicationFolder() = 0;
    /// Returns a variable of the system environment; empty if it is not set.
    virtual QString environmentVariable(const QString &name) = 0;

    virtual bool exists(const QString &path) = 0;
    /// Copies a file without overwriting. The destination appears with its whole contents or not at all.
    virtual bool copy(const QString &source, const QString &destination) = 0;
    virtual bool remove(const QString &path) = 0;

    /// Runs a tool and waits for its end, for at most 30 s.
    virtual ToolRun runTool(const QString &program, const QStringList &arguments,
                            const ToolListener &listener) = 0;

    virtual InfCopy copyOemInf(const QString &infPath) = 0;
    /// Registers a kernel driver that starts on demand. `binaryPath` uses "\". Returns false also if the
    /// service already exists.
    virtual bool createService(const QString &binaryPath, const QString &name) = 0;
    /// Returns false also if the service is already running.
    virtual bool startService(const QString &name) = 0;
};
