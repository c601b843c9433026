#include <QCoreApplication>

#include <cstdio>

/// An empty console program with Qt that prints one line: the peer for the first line of "quillmarsh-cli
/// list".
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    std::puts("a line");
    std::fflush(stdout);
    return 0;
}
