#pragma once

#include "checks/Finding.h"
#include "checks/ToolFiles.h"
#include "devices/usb/UsbBus.h"
#include "support/lock/UpdateLock.h"

#include <QString>
#include <QVector>

#include <functional>

/// Checks the machine and the firmware server for everything that an update needs. Runs local event loops and
/// ends early when the program is told to end. May be used on any thread, but only on one at a time.
class SystemCheck
{
public:
    struct Dependencies
    {
        UsbBus &usb;
        const UpdateLock &lock;
        ToolFiles tools;
        /// The folder for downloads.
        QString folder;
    };
    /// Called for each finding as soon as it is made.
    using OnFinding = std::function<void(const Finding &finding)>;

    /// `dependencies` must outlive the check.
    explicit SystemCheck(const Dependencies &dependencies, OnFinding onFinding = {});

    /// Checks what an update of `requestedModel` needs or, if that is empty, an update of the connected
    /// model.
    QVector<Finding> run(const QString &requestedModel);

private:
    void checkMachine(const QString &requestedModel);
    void checkTools();
    qint64 checkServer();
    void report(const Finding &finding);

    const Dependencies m_dependencies;
    const OnFinding m_onFinding;
    QVector<Finding> m_findings;
    QString m_model;
};
