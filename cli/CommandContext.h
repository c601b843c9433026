#pragma once

#include "checks/ToolFiles.h"
#include "cli/EventSink.h"
#include "cli/Options.h"
#include "devices/DeviceLibraries.h"
#include "devices/HidPort.h"
#include "devices/UsbBus.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

/// What the commands use: the options, the buses, the maker's tools, and a folder for files that is removed
/// in every ending. Main thread.
class CommandContext
{
public:
    /// `sink` must outlive the context.
    CommandContext(Options options, EventSink &sink);

    const Options options;
    EventSink &sink;
    const ToolFiles tools;

    /// Returns a bus. The first call initialises its library.
    UsbBus &usb();
    HidPort &hid();
    /// Returns whether libusb could be initialised.
    bool isUsbReady();

    /// Returns the private folder, which the first call makes; empty if it could not be made.
    QString folder();
    /// Returns what the last resort still does when the program is about to end with `exitCode`: it removes
    /// the private folder.
    std::function<int()> lastWords(ExitCode exitCode) const;

    /// Returns where downloads lie: the private folder or, if that could not be made, the one around it.
    QString downloadFolder();

    /// Waits, running the event loop. Returns false if the program was told to end.
    static bool waitMs(int milliseconds);

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    DeviceLibraries m_libraries;
    std::unique_ptr<UsbBus> m_usb;
    std::unique_ptr<HidPort> m_hid;
};
