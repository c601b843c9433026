#pragma once

#include <QString>

/// Where the test harness finds what it runs: in the build folder that it was built in, or in the one that
/// the environment variable QUILLMARSH_HARNESS_BUILD names.
namespace BuildPaths {

/// The program under test.
QString program();
/// The program that updates without a window.
QString commandLineProgram();
QString busController();
/// The one whose bus is seen only by libraries in place of libusb and hidapi.
QString listedBusController();
/// The one whose devices are gadgets on the kernel's own bus.
QString gadgetBusController();
QString firmwareServer();
/// The executable that plays every tool that the program starts.
QString standIn();
/// What QT_PLUGIN_PATH has to name for the probe to be found.
QString plugins();

} // namespace BuildPaths
