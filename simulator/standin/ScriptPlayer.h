#pragma once

#include "simulator/standin/DeviceTool.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>

/// Plays the steps of one run of a script. They are described in the simulator's README.md.
class ScriptPlayer
{
public:
    /// `self` is the path of the running stand-in. `tool` performs the steps that access a device; it must
    /// outlive the player.
    ScriptPlayer(std::filesystem::path self, DeviceTool &tool);

    /// Returns the exit code, unless the steps crash or hang.
    int play(const nlohmann::json &steps);

private:
    using Step = nlohmann::json;

    /// Each of these functions handles the steps that it knows and returns whether it did. A step that ends
    /// the run sets m_exitCode.
    bool playOutput(const Step &step);
    bool playDevice(const Step &step);
    bool playFiles(const Step &step);
    bool playProcess(const Step &step);
    void endUnless(bool succeeded);

    std::filesystem::path m_self;
    DeviceTool &m_tool;
    std::optional<int> m_exitCode;
};
