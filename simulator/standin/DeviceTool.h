#pragma once

#include "simulator/connection/BusConnection.h"

#include <string>
#include <vector>

/// A flasher or an IAP programmer, depending on its arguments. It succeeds only if a device on the bus is
/// ready for it.
class DeviceTool
{
public:
    explicit DeviceTool(std::vector<std::string> arguments);

    /// Performs the operation in the arguments and returns the exit code.
    int play();

    /// Write the image in the arguments to the bootloader on the bus, or to the microcontroller in the
    /// arguments. On failure they print the reason and return false.
    bool burn();
    bool program();
    bool reset();

    static void printProgress();
    static void printSuccess();

private:
    int playFlasher();
    int playProgrammer();
    nlohmann::json devices();
    bool hasBootloader();
    /// Returns the key of the microcontroller with the ids in the arguments; empty if it is not on the bus.
    std::string microcontroller();
    /// Returns an argument; empty if there is none with this index.
    std::string argument(std::size_t index) const;

    std::vector<std::string> m_arguments;
    BusConnection m_bus;
};
