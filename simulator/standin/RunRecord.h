#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Writes one run into the record of a stand-in tool, which StandinRuns reads.
class RunRecord
{
public:
    explicit RunRecord(const std::filesystem::path &tool);

    /// Notes the start; false when the record cannot be written.
    bool start(const std::vector<std::string> &arguments);
    /// How many runs started before this one.
    int earlierRuns() const { return m_earlierRuns; }
    /// How many of them had the same first argument.
    int earlierRunsLikeThis() const { return m_earlierRunsLikeThis; }
    void end(int exitCode) const;

private:
    std::filesystem::path m_file;
    int m_earlierRuns = 0;
    int m_earlierRunsLikeThis = 0;
};
