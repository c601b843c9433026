#pragma once

#include "checks/ToolFiles.h"
#include "cli/commands/Options.h"
#include "cli/output/EventSink.h"
#include "devices/DeviceLibraries.h"
#include "devices/hid/HidPort.h"
#include "devices/usb/UsbBus.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

/// What the commands share: the options, the buses, the maker's tools, and a private folder for files, which
/// is removed however the program ends. Main thread.
class CommandContext
{
public:
    /// `sink` must outlive the context.
    CommandContext(Options options, EventSink &sink);

    const Options options;
    EventSink &sink;
    const ToolFiles tools;

    /// Each returns a bus. The first call initialises its library.
    UsbBus &usb();
    HidPort &hid();
    /// Returns whether libusb could be initialised.
    bool isUsbReady();

    /// Returns the private folder, which the first call makes; empty if it could not be made.
    QString folder();
    /// Returns the final step of a forced exit when the program is about to end with `exitCode`: removes the
    /// private folder and returns the exit code.
    std::function<int()> finalStep(ExitCode exitCode) const;

    /// Returns the folder for downloads: the private one or, if that could not be made, the temporary folder.
    QString downloadFolder();

    /// Waits in an event loop. Returns false if the program was told to end.
    static bool waitMs(int milliseconds);

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    DeviceLibraries m_libraries;
    std::unique_ptr<UsbBus> m_usb;
    std::unique_ptr<HidPort> m_hid;
};
