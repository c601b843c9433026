#include <QCoreApplication>

#include <cstdio>

/// What any console program of Qt's takes until its first line: the peer of the first line of a list.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    std::puts("a line");
    std::fflush(stdout);
    return 0;
}
