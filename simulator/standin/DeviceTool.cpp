#include "simulator/standin/DeviceTool.h"

#include "simulator/standin/ToolOutput.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <thread>

namespace {

using Json = nlohmann::json;

constexpr int failed = 1;
constexpr std::size_t programmerArguments = 11;
constexpr char noMicrocontroller[] = "No USB IAP device!\n";
constexpr char noDevice[] = "Open upg device failed\n";
// Long enough for each line to be read separately.
constexpr std::chrono::milliseconds betweenLines{30};

/// Parses an id in the form of the IAP programmer's arguments.
long idOf(const std::string &signedHex)
{
    char *end = nullptr;
    const long id = std::strtol(signedHex.c_str(), &end, 16);
    return !signedHex.empty() && *end == '\0' ? id : -1;
}

std::optional<std::string> contentsOf(const std::string &path)
{
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool isOk(const Json &answer)
{
    return answer.value("ok", false);
}

} // namespace

DeviceTool::DeviceTool(std::vector<std::string> arguments) : m_arguments(std::move(arguments)) {}

int DeviceTool::play()
{
    return argument(0) == "GetData" || argument(0) == "Start" ? playProgrammer() : playFlasher();
}

int DeviceTool::playFlasher()
{
    if (argument(0) == "shcmd" && argument(1) == "reset") {
        const bool done = reset();
        print(done ? "reset done\n" : noDevice);
        return done ? 0 : failed;
    }
    if (m_arguments.size() != 2 || argument(0) != "image") {
        print("usage: image PATH | shcmd reset\n");
        return failed;
    }
    if (!hasBootloader()) {
        print(noDevice);
        return failed;
    }
    printProgress();
    if (!burn())
        return failed;
    printSuccess();
    return 0;
}

int DeviceTool::playProgrammer()
{
    const std::string device = microcontroller();
    if (argument(0) == "GetData") {
        print(device.empty() ? "no device\n" : "device: " + device + ";\n");
        return 0;
    }
    if (m_arguments.size() != programmerArguments || argument(1) != "1") {
        print("usage: GetData VID PID | Start 1 ADDRESS VID PID PORT PORT RATE START CRC FILE\n");
        return failed;
    }
    if (device.empty()) {
        print(noMicrocontroller);
        return failed;
    }
    for (int percent = 0; percent < 100; percent += 10) {
        print("SetProgress: " + std::to_string(percent) + '\n');
        std::this_thread::sleep_for(betweenLines);
    }
    if (!program())
        return failed;
    print("SetProgress: 100\n");
    return 0;
}

bool DeviceTool::burn()
{
    const std::optional<std::string> image = contentsOf(argument(1));
    if (argument(0) != "image" || !image) {
        print("Open image failed\n");
        return false;
    }
    const Json answer = m_bus.request({{"op", "burn"}, {"size", image->size()}}, *image);
    if (isOk(answer))
        return true;
    print(noDevice);
    printTo(stderr, answer.value("error", "") + '\n');
    return false;
}

bool DeviceTool::program()
{
    const std::optional<std::string> image = contentsOf(argument(programmerArguments - 1));
    if (!image) {
        print("Open image failed\n");
        return false;
    }
    const std::string device = microcontroller();
    if (!device.empty() &&
        isOk(m_bus.request({{"op", "program"}, {"device", device}, {"size", image->size()}}, *image)))
        return true;
    print(noMicrocontroller);
    return false;
}

bool DeviceTool::reset()
{
    return isOk(m_bus.request({{"op", "reset"}}));
}

void DeviceTool::printProgress()
{
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        print(std::string("[upg] Upgrade fwc: image.target.") + partition + " size 4096\n");
        std::this_thread::sleep_for(betweenLines);
    }
}

void DeviceTool::printSuccess()
{
    print("Burn image successfully!\n");
}

Json DeviceTool::devices()
{
    return m_bus.request({{"op", "state"}}).value("devices", Json::array());
}

bool DeviceTool::hasBootloader()
{
    const Json all = devices();
    return std::any_of(all.begin(), all.end(),
                       [](const Json &device) { return device.value("state", "") == "bootloader"; });
}

std::string DeviceTool::microcontroller()
{
    const std::size_t first = argument(0) == "Start" ? 3 : 1;
    const long vendorId = idOf(argument(first));
    const long productId = idOf(argument(first + 1));
    for (const Json &device : devices()) {
        if (device.value("programmable", false) && device.value("state", "") == "application" &&
            device.value("vendorId", 0L) == vendorId && device.value("productId", 0L) == productId)
            return device.value("key", "");
    }
    return {};
}

std::string DeviceTool::argument(std::size_t index) const
{
    return index < m_arguments.size() ? m_arguments[index] : std::string();
}
