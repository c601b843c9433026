#pragma once

#include <QString>

/// Returns the paths of the executables that the test harness runs. They are in the build folder of the
/// harness, or in the one named by the environment variable QUILLMARSH_HARNESS_BUILD.
namespace BuildPaths {

/// The program under test.
QString program();
/// quillmarsh-cli, the program without a window.
QString commandLineProgram();
QString busController();
/// The controller of the bus that only the replacements for libusb and hidapi can see.
QString listedBusController();
/// The one whose devices are gadgets on the kernel's own bus.
QString gadgetBusController();
QString firmwareServer();
/// The stand-in for all tools that the program starts.
QString standIn();
/// The value of QT_PLUGIN_PATH with which Qt finds the probe.
QString plugins();

} // namespace BuildPaths
