#pragma once

#include "simulator/report/ReportedBus.h"

#include <QString>
#include <QStringList>

/// What the demo was asked to show.
struct DemoOptions
{
    /// Press Start and end by itself, on a display of its own.
    bool automatic = false;
    /// The window in Chinese, as on a system in China.
    bool chinese = false;
    /// Where the pictures go.
    QString pictures = QStringLiteral(".");
    /// The model on the bus.
    QString model = QStringLiteral("DevMaa");
    /// The program's own arguments; without any a person presses Start.
    QStringList programArguments;
    /// The device waits in its bootloader already, and cannot tell its model.
    bool inBootloader = false;
    /// The firmware file to burn instead of the server's, absolute; empty for the server's.
    QString localFile;

    /// The model is a microcontroller, which the IAP panel programs.
    bool throughIapPanel = false;
    /// Show quillmarsh-cli in this terminal, and no window.
    bool withoutWindow = false;
    /// It writes events for a program.
    bool json = false;
    /// A user's report whose bus is shown instead of the model's, absolute; empty for none.
    QString report;
    /// What is read from it.
    ReportedBus reported;
    /// The build folder whose Windows program is shown under Wine; empty for the program of this build.
    QString windowsBuild;

    /// The program starts the update by itself and hides its controls.
    bool isLaunchMode() const { return !programArguments.isEmpty(); }

    /// Reads the arguments; ends the process with a message when it cannot.
    static DemoOptions read(const QStringList &arguments);
};
