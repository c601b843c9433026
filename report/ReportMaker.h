#pragma once

#include "checks/ToolFiles.h"
#include "devices/hid/HidPort.h"
#include "devices/usb/UsbBus.h"
#include "report/LastRun.h"
#include "support/lock/UpdateLock.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Makes a report for support: one readable JSON text with what the program finds on this machine.
/// docs/report.schema.json describes its form.
namespace ReportMaker {

/// What a report is made from. The referenced objects must outlive the call of make().
struct Source
{
    UsbBus &usb;
    HidPort &hid;
    const UpdateLock &lock;
    /// Whether libusb was initialised.
    bool usbReady = false;
    ToolFiles tools;
    /// The program's folder for downloads.
    QString temporaryFolder;
    /// The path of the log that users send to support.
    QString logFile;
    /// "en" or "zh": the language of the program.
    QString language;
    /// The last update of the running program; nothing to take it from the log.
    std::optional<LastRun> lastRun;
};

/// Returns the report in UTF-8. Takes up to half a minute if the firmware server does not answer. Ends early,
/// with an empty result, when the program is told to end. May be called from any thread, but only from one at
/// a time.
QByteArray make(const Source &source);

} // namespace ReportMaker
