// Prints the arguments as ProgramArguments passes them to the program, one on each line.
#include "simulator/standin/ByteStreams.h"
#include "support/process/ProgramArguments.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    useByteStreams();
    const QCoreApplication application(argc, argv);
    const ProgramArguments arguments(argc, argv);
    const std::vector<const char *> values = arguments.values();
    for (int i = 1; i < arguments.count(); ++i)
        std::printf("%s\n", values.at(static_cast<size_t>(i)));
}
