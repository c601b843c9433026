#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Writes a run to the record of a stand-in tool, which StandinRuns reads.
class RunRecord
{
public:
    explicit RunRecord(const std::filesystem::path &tool);

    /// Records the start. Returns false if the record cannot be written.
    bool start(const std::vector<std::string> &arguments);
    /// Returns the number of runs that started before this one.
    int earlierRuns() const { return m_earlierRuns; }
    /// Returns how many of them had the same first argument.
    int earlierRunsLikeThis() const { return m_earlierRunsLikeThis; }
    void end(int exitCode) const;

private:
    std::filesystem::path m_file;
    int m_earlierRuns = 0;
    int m_earlierRunsLikeThis = 0;
};
