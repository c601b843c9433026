#pragma once

#include "driver/DriverSystem.h"

/// The real functions of Windows. GUI thread only.
class WindowsDriverSystem : public DriverSystem
{
public:
    LoadedDrivers loadedDrivers() override;
    std::optional<QString> driverBaseName(quint64 address) override;

    QString applicationFolder() override;
    QString environmentVariable(const QString &name) override;

    bool exists(const QString &path) override;
    bool copy(const QString &source, const QString &destination) override;
    bool remove(const QString &path) override;

    ToolRun runTool(const QString &program, const QStringList &arguments,
                    const ToolListener &listener) override;

    InfCopy copyOemInf(const QString &infPath) override;
    bool createService(const QString &binaryPath, const QString &name) override;
    bool startService(const QString &name) override;
};
