#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The system functions that a stand-in tool needs.
namespace StandinSystem {

/// Returns the path of the running program, even if it was started by its name alone.
std::filesystem::path ownPath();
/// Returns the arguments after the program's name, in UTF-8 on all systems.
std::vector<std::string> arguments(int argc, char *argv[]);
int processId();

} // namespace StandinSystem
