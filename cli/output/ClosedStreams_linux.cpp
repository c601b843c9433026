#include "cli/output/ClosedStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens a pipe at `descriptor` whose other end is closed: reading finds the end of the input, writing fails.
void fill(int descriptor)
{
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        return;
    const int kept = descriptor == STDIN_FILENO ? ends[0] : ends[1];
    if (kept != descriptor)
        dup2(kept, descriptor);
    for (const int end : ends) {
        if (end != descriptor)
            close(end);
    }
}

} // namespace

void fillClosedStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1)
            fill(descriptor);
    }
}
