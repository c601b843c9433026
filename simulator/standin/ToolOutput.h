#pragma once

#include <cstdio>
#include <string>

/// Writes output and flushes it, so that it can be read at once.
inline void printTo(std::FILE *stream, const std::string &bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}
inline void print(const std::string &bytes)
{
    printTo(stdout, bytes);
}
