#pragma once

class DeviceLibraries;

/// Initialises the device libraries for a program with a window. GUI thread.
namespace LibraryWarnings {

/// Initialises libusb, then hidapi. Shows a modal warning box for one that cannot be initialised; the program
/// then continues without it.
void initialise(DeviceLibraries &libraries);

/// Requests the program to quit if a library failed. Intentional: the main event loop forgets the request
/// when it starts, so that the window opens. Until then the request ends every local event loop at once, so
/// call this after all warnings and tools.
void askToQuitAfterFailure(const DeviceLibraries &libraries);

} // namespace LibraryWarnings
