// Plays another copy of the program that is updating a device: takes the update lock of the file in its
// argument, prints the line "taken" and keeps the lock until it is killed or its standard input ends.
#include "support/lock/UpdateLock.h"
#include "support/log/QuietReporter.h"

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    QuietReporter reporter;
    UpdateLock lock(QString::fromUtf8(argv[1]));
    const UpdateLock::Hold hold = lock.take(reporter);
    if (!hold)
        return 1;
    std::puts("taken");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
