#pragma once

#include <cstdio>
#include <string>

/// Output that whoever reads it sees at once.
inline void printTo(std::FILE *stream, const std::string &bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}
inline void print(const std::string &bytes)
{
    printTo(stdout, bytes);
}
