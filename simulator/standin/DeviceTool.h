#pragma once

#include "simulator/connection/BusConnection.h"

#include <string>
#include <vector>

/// An honest flasher or IAP programmer, depending on its arguments: it succeeds only when a device on the bus
/// is ready for it.
class DeviceTool
{
public:
    explicit DeviceTool(std::vector<std::string> arguments);

    /// Does what the arguments ask for and returns the exit code.
    int play();

    /// Hands the arguments' image to the bootloader on the bus, or to their microcontroller. Both say why not
    /// when they cannot.
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
    /// The microcontroller with the ids of the arguments, by its key; empty when it is not there.
    std::string microcontroller();
    /// Empty where there is no such argument.
    std::string argument(std::size_t index) const;

    std::vector<std::string> m_arguments;
    BusConnection m_bus;
};
