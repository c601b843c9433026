#include "simulator/standin/RunRecord.h"

#include "simulator/standin/StandinSystem.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <fstream>

namespace {

using Json = nlohmann::json;

std::int64_t steadyMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

bool append(const std::filesystem::path &file, const Json &line)
{
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    // Written at once, so that the lines of two simultaneous runs are not mixed.
    stream << line.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n' << std::flush;
    return stream.good();
}

std::string firstOf(const Json &arguments)
{
    return arguments.is_array() && !arguments.empty() ? arguments.front().get<std::string>() : std::string();
}

} // namespace

RunRecord::RunRecord(const std::filesystem::path &tool) : m_file(tool)
{
    m_file += ".runs.jsonl";
}

bool RunRecord::start(const std::vector<std::string> &arguments)
{
    const std::string directory = std::filesystem::current_path().generic_u8string();
    const Json started{{"event", "start"},
                       {"process", StandinSystem::processId()},
                       {"arguments", arguments},
                       {"workingDirectory", directory},
                       {"startMs", steadyMs()}};
    if (!append(m_file, started))
        return false;
    // The number of the run is the position of its start line, even if another run has added one meanwhile.
    std::ifstream record(m_file, std::ios::binary);
    for (std::string line; std::getline(record, line);) {
        const Json earlier = Json::parse(line, nullptr, false);
        if (!earlier.is_object() || earlier.value("event", "") != "start")
            continue;
        if (earlier.value("process", 0) == started["process"] &&
            earlier.value("startMs", std::int64_t(0)) == started["startMs"])
            return true;
        ++m_earlierRuns;
        if (firstOf(earlier["arguments"]) == firstOf(started["arguments"]))
            ++m_earlierRunsLikeThis;
    }
    return false;
}

void RunRecord::end(int exitCode) const
{
    append(m_file, {{"event", "end"}, {"run", m_earlierRuns}, {"endMs", steadyMs()}, {"exitCode", exitCode}});
}
