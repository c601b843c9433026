#pragma once

#include "checks/ToolFiles.h"
#include "devices/HidPort.h"
#include "devices/UsbBus.h"
#include "report/LastRun.h"
#include "support/UpdateLock.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Makes a report for support: one readable JSON text that tells what the program sees on this machine.
/// docs/report.schema.json describes it.
namespace ReportMaker {

/// What a report is made from. The references must outlive its making.
struct Source
{
    UsbBus &usb;
    HidPort &hid;
    const UpdateLock &lock;
    /// Whether libusb was initialised.
    bool usbReady = false;
    ToolFiles tools;
    /// Where the program keeps its downloads.
    QString temporaryFolder;
    /// Path of the log that users send to support.
    QString logFile;
    /// "en" or "zh": the language of the program.
    QString language;
    /// The update that this program ran last; nothing to have the log tell.
    std::optional<LastRun> lastRun;
};

/// Returns the report in UTF-8. Takes up to half a minute if the firmware server does not answer, and ends
/// early, with an empty result, when the program is told to end. May be called from any thread, one at a
/// time.
QByteArray make(const Source &source);

} // namespace ReportMaker
