// Does the steps that lie beside it (ToldTools.h), after it has noted its arguments. Without the
// toolkit, so that it starts fast and can be copied anywhere.
#include "simulator/standin/ByteStreams.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>

#include <unistd.h>

namespace {

std::string contents(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string decoded(const std::string &text)
{
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

void write(std::FILE *stream, const std::string &bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

void sleepMs(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void moveTo(const std::string &from, const std::string &to)
{
    if (std::rename(from.c_str(), to.c_str()) != 0)
        std::exit(98);
}

/// The number of this run, from 1, of all the folder's tools.
int noteRun(const std::string &folder, const std::string &name, int argc, char *argv[])
{
    std::string line = name.substr(0, name.rfind(".exe"));
    for (int i = 1; i < argc; ++i)
        line += std::string("|") + argv[i];
    std::ofstream(folder + "runs", std::ios::binary | std::ios::app) << line << '\n';
    const std::string all = contents(folder + "runs");
    int lines = 0;
    for (const char each : all)
        lines += each == '\n' ? 1 : 0;
    return lines;
}

void act(const std::string &self, const std::string &verb, const std::string &argument)
{
    if (verb == "print") {
        write(stdout, argument);
    } else if (verb == "error") {
        write(stderr, argument);
    } else if (verb == "flood") {
        write(stdout, std::string(static_cast<size_t>(std::stoi(argument)), '\0'));
    } else if (verb == "exit") {
        std::exit(std::stoi(argument));
    } else if (verb == "crash") {
        std::signal(SIGILL, SIG_DFL);
        __builtin_trap();
    } else if (verb == "sleep") {
        sleepMs(std::stoi(argument));
    } else if (verb == "deaf") {
        std::signal(SIGTERM, SIG_IGN);
    } else if (verb == "await") {
        while (!std::ifstream(argument))
            sleepMs(20);
    } else if (verb == "pid") {
        std::ofstream(argument + ".new", std::ios::binary) << getpid() << '\n';
        moveTo(argument + ".new", argument);
    } else if (verb == "vanish") {
        // A running program can be moved everywhere, but not removed.
        moveTo(self, self + ".gone");
    } else {
        write(stderr, "told tool: an unknown step: " + verb + '\n');
        std::exit(99);
    }
}

/// Whether the step after this condition is to be done; conditions are no steps themselves.
bool holds(const std::string &verb, const std::string &argument, int run, const std::string &firstArgument)
{
    if (verb == "unless")
        return firstArgument != argument;
    if (verb == "when")
        return firstArgument == argument;
    return verb == "after" ? run > std::stoi(argument) : run <= std::stoi(argument);
}

} // namespace

int main(int argc, char *argv[])
{
    useByteStreams();
    const std::string self = argv[0];
    const size_t nameAt = self.find_last_of("/\\") + 1;
    const int run = noteRun(self.substr(0, nameAt), self.substr(nameAt), argc, argv);

    std::istringstream steps(contents(self + ".steps"));
    bool doNext = true;
    for (std::string line; std::getline(steps, line);) {
        const size_t blank = line.find(' ');
        const std::string verb = line.substr(0, blank);
        const std::string argument = decoded(line.substr(blank + 1));
        if (verb == "unless" || verb == "when" || verb == "after" || verb == "until") {
            doNext = holds(verb, argument, run, argc > 1 ? argv[1] : "");
            continue;
        }
        if (doNext)
            act(self, verb, argument);
        doNext = true;
    }
    return 0;
}
