#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What a stand-in tool has to ask the system for.
namespace StandinSystem {

/// The path of the program that runs, also when it was started by its name alone.
std::filesystem::path ownPath();
/// The arguments after the program's name, in UTF-8 whatever the system's own encoding is.
std::vector<std::string> arguments(int argc, char *argv[]);
int processId();

} // namespace StandinSystem
