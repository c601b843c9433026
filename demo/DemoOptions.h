#pragma once

#include "simulator/report/ReportedBus.h"

#include <QString>
#include <QStringList>

/// The demo's command line.
struct DemoOptions
{
    /// Press Start and close the window automatically, on a display that nobody sees.
    bool automatic = false;
    /// Show the window in Chinese, as on a system in China.
    bool chinese = false;
    /// The folder for screenshots.
    QString pictures = QStringLiteral(".");
    /// The model on the bus.
    QString model = QStringLiteral("DevMaa");
    /// The program's own arguments; without any the user presses Start.
    QStringList programArguments;
    /// The device waits in its bootloader from the start and cannot tell its model.
    bool inBootloader = false;
    /// Absolute path of the firmware file to burn; empty to burn the server's.
    QString localFile;

    /// The model is a microcontroller, which the IAP panel programs.
    bool throughIapPanel = false;
    /// Show quillmarsh-cli in this terminal, and no window.
    bool withoutWindow = false;
    /// quillmarsh-cli writes events for another program.
    bool json = false;
    /// Absolute path of a user's report, whose devices are shown instead of the model; empty for none.
    QString report;
    /// The contents of that report.
    ReportedBus reported;
    /// How the firmware server misbehaves, in the form of its option --fault.
    QStringList serverFaults;
    /// The build folder whose Windows program is shown under Wine; empty for the program of this build.
    QString windowsBuild;

    /// Returns whether the program starts the update itself and hides its controls.
    bool isLaunchMode() const { return !programArguments.isEmpty(); }

    /// Reads the arguments. Ends the process with a message if they are wrong.
    static DemoOptions read(const QStringList &arguments);
};
