#pragma once

class DeviceLibraries;

/// Initialises the device libraries for a program with a window. GUI thread.
namespace LibraryWarnings {

/// Initialises libusb, then hidapi. Shows a modal warning box for one that cannot be initialised; the program
/// then continues without it.
void initialise(DeviceLibraries &libraries);

/// Asks Qt to quit if a library failed. Intentional: the main event loop forgets the request when it starts,
/// so that the window still opens. Until then the request ends every local event loop at once, so call this
/// after everything that shows a box or waits for a tool.
void askToQuitAfterFailure(const DeviceLibraries &libraries);

} // namespace LibraryWarnings
