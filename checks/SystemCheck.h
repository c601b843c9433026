#pragma once

#include "checks/Finding.h"
#include "checks/ToolFiles.h"
#include "devices/UsbBus.h"
#include "support/UpdateLock.h"

#include <QString>
#include <QVector>

#include <functional>

/// Looks at the machine and at the firmware server for everything that an update needs. It runs local event
/// loops and ends early when the program is told to end. May be used on any thread, one at a time.
class SystemCheck
{
public:
    struct Dependencies
    {
        UsbBus &usb;
        const UpdateLock &lock;
        ToolFiles tools;
        /// Where downloads lie.
        QString folder;
    };
    /// Hears of each finding as it is made.
    using Told = std::function<void(const Finding &finding)>;

    /// `dependencies` must outlive the check.
    explicit SystemCheck(const Dependencies &dependencies, Told told = {});

    /// Checks for an update of `asked`; when that is empty, of the connected model.
    QVector<Finding> run(const QString &asked);

private:
    void lookAtMachine(const QString &asked);
    void lookAtTools();
    qint64 lookAtServer();
    void report(const Finding &finding);

    const Dependencies m_dependencies;
    const Told m_told;
    QVector<Finding> m_findings;
    QString m_model;
};
