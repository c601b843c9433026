#include "simulator/standin/ScriptPlayer.h"

#include "simulator/standin/StandinSystem.h"
#include "simulator/standin/ToolOutput.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

namespace {

using Json = nlohmann::json;

constexpr int failedStep = 1;
constexpr int unknownStep = 99;

void sleepMs(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(std::max(0, milliseconds)));
}

std::string bytesOf(const std::string &hex)
{
    std::string bytes;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

/// Prints the bytes at once or, if the step says so, in two pieces or byte by byte.
void printPieces(const std::string &bytes, const Json &step)
{
    const int pauseMs = step.value("pauseMs", 50);
    const bool byteWise = step.value("byteWise", false);
    const auto first =
        byteWise ? std::size_t(1) : std::max<std::size_t>(1, step.value("splitAt", bytes.size()));
    print(bytes.substr(0, first));
    for (std::size_t at = first; at < bytes.size();) {
        sleepMs(pauseMs);
        const std::size_t count = byteWise ? 1 : bytes.size() - at;
        print(bytes.substr(at, count));
        at += count;
    }
}

/// Returns lines with the given number of bytes in total.
std::string flood(std::size_t bytes)
{
    std::string text(bytes, 'x');
    for (std::size_t at = 99; at < bytes; at += 100)
        text[at] = '\n';
    return text;
}

/// Returns bytes that never occur in UTF-8, with line feeds between them.
std::string garbage(std::size_t bytes)
{
    std::string text(bytes, '\xFF');
    for (std::size_t at = 31; at < bytes; at += 32)
        text[at] = '\n';
    return text;
}

bool write(const std::filesystem::path &path, const std::string &contents)
{
    std::ofstream file(path, std::ios::binary);
    file << contents << std::flush;
    return file.good();
}

std::filesystem::path withSuffix(std::filesystem::path path, const char *suffix)
{
    return path += suffix;
}

[[noreturn]] void crash()
{
    std::signal(SIGILL, SIG_DFL); // a sanitizer's handler would end the process normally
    __builtin_trap();
}

} // namespace

ScriptPlayer::ScriptPlayer(std::filesystem::path self, DeviceTool &tool)
    : m_self(std::move(self)),
      m_tool(tool)
{
}

int ScriptPlayer::play(const Json &steps)
{
    for (const Json &step : steps) {
        if (!playOutput(step) && !playDevice(step) && !playFiles(step) && !playProcess(step)) {
            printTo(stderr, "stand-in: its script has an unknown step: " + step.dump() + '\n');
            return unknownStep;
        }
        if (m_exitCode)
            return *m_exitCode;
    }
    return 0;
}

bool ScriptPlayer::playOutput(const Step &step)
{
    if (step.contains("print"))
        printPieces(step["print"], step);
    else if (step.contains("printHex"))
        printPieces(bytesOf(step["printHex"]), step);
    else if (step.contains("stderr"))
        printTo(stderr, step["stderr"]);
    else if (step.contains("progress"))
        DeviceTool::printProgress();
    else if (step.contains("success"))
        DeviceTool::printSuccess();
    else if (step.contains("flood"))
        print(flood(step["flood"]));
    else if (step.contains("garbage"))
        print(garbage(step["garbage"]));
    else
        return false;
    return true;
}

bool ScriptPlayer::playDevice(const Step &step)
{
    if (step.contains("burn"))
        endUnless(m_tool.burn());
    else if (step.contains("program"))
        endUnless(m_tool.program());
    else if (step.contains("reset"))
        endUnless(m_tool.reset());
    else
        return false;
    return true;
}

bool ScriptPlayer::playFiles(const Step &step)
{
    // An absolute path is not changed.
    const auto path = [this, &step](const char *key) {
        return m_self.parent_path() / std::filesystem::u8path(step[key].get<std::string>());
    };
    if (step.contains("leave")) {
        endUnless(write(path("leave"), step.value("contents", "")));
    } else if (step.contains("awaitFile")) {
        while (!std::filesystem::exists(path("awaitFile")))
            sleepMs(20);
    } else if (step.contains("processId")) {
        // The file is renamed to its name once it is complete.
        const std::filesystem::path unfinished = withSuffix(path("processId"), ".new");
        endUnless(write(unfinished, std::to_string(StandinSystem::processId()) + '\n'));
        std::filesystem::rename(unfinished, path("processId"));
    } else if (step.contains("vanish")) {
        // On all systems a running program can be renamed, but not everywhere can it be removed.
        std::filesystem::rename(m_self, withSuffix(m_self, ".gone"));
    } else {
        return false;
    }
    return true;
}

bool ScriptPlayer::playProcess(const Step &step)
{
    if (step.contains("sleepMs"))
        sleepMs(step["sleepMs"]);
    else if (step.contains("deaf"))
        std::signal(SIGTERM, SIG_IGN);
    else if (step.contains("exit"))
        m_exitCode = step["exit"].get<int>();
    else if (step.contains("crash"))
        crash();
    else if (step.contains("hang"))
        std::this_thread::sleep_for(std::chrono::hours(24));
    else
        return false;
    return true;
}

void ScriptPlayer::endUnless(bool succeeded)
{
    if (!succeeded)
        m_exitCode = failedStep;
}
