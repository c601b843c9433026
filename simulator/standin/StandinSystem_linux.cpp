#include "simulator/standin/StandinSystem.h"

#include <unistd.h>

std::filesystem::path StandinSystem::ownPath()
{
    return std::filesystem::read_symlink("/proc/self/exe");
}

std::vector<std::string> StandinSystem::arguments(int argc, char *argv[])
{
    return {argv + 1, argv + argc};
}

int StandinSystem::processId()
{
    return getpid();
}
