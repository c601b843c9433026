// Plays a tool that the program starts: one that works normally, or one that follows the script beside it.
// It depends neither on Qt nor, on Windows, on the compiler's runtime libraries, so that it starts quickly
// and runs from any folder.
#include "simulator/standin/ByteStreams.h"
#include "simulator/standin/DeviceTool.h"
#include "simulator/standin/RunRecord.h"
#include "simulator/standin/ScriptPlayer.h"
#include "simulator/standin/StandinSystem.h"
#include "simulator/standin/ToolOutput.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <optional>

namespace {

using Json = nlohmann::json;

constexpr int noRecord = 97;
constexpr int unusableScript = 98;

/// Returns the tool's script: null if there is none, discarded if it cannot be read.
Json readScript(std::filesystem::path tool)
{
    std::ifstream file(tool += ".script.json", std::ios::binary);
    return file ? Json::parse(file, nullptr, false) : Json();
}

const Json &runsIn(const Json &section)
{
    static const Json none = Json::array();
    const auto runs = section.find("runs");
    return runs != section.end() && runs->is_array() ? *runs : none;
}

int play(const std::filesystem::path &self, const std::vector<std::string> &arguments,
         const RunRecord &record)
{
    DeviceTool tool(arguments);
    const Json script = readScript(self);
    if (script.is_null())
        return tool.play();
    if (!script.is_object()) {
        printTo(stderr, "stand-in: its script cannot be read\n");
        return unusableScript;
    }
    const auto section = arguments.empty() ? script.end() : script.find(arguments.front());
    const bool ownSection = section != script.end() && section->is_object();
    const Json &runs = runsIn(ownSection ? *section : script);
    if (!runs.empty()) {
        const int earlier = ownSection ? record.earlierRunsLikeThis() : record.earlierRuns();
        const auto last = static_cast<int>(runs.size()) - 1;
        return ScriptPlayer(self, tool).play(runs[static_cast<std::size_t>(std::min(earlier, last))]);
    }
    // With an unusable script the tool must not work normally, but the script may have sections for other
    // arguments only.
    if (!script.contains("runs"))
        return tool.play();
    printTo(stderr, "stand-in: its script holds no runs\n");
    return unusableScript;
}

int run(const std::vector<std::string> &arguments)
{
    const std::filesystem::path self = StandinSystem::ownPath();
    RunRecord record(self);
    if (!record.start(arguments)) {
        printTo(stderr, "stand-in: cannot write its record\n");
        return noRecord;
    }
    const int exitCode = play(self, arguments, record);
    record.end(exitCode);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    useByteStreams();
    try {
        return run(StandinSystem::arguments(argc, argv));
    } catch (const std::exception &error) {
        printTo(stderr, std::string("stand-in: ") + error.what() + '\n');
        return unusableScript;
    }
}
