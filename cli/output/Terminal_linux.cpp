#include "cli/output/Terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

bool Terminal::canAsk()
{
    return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
}

int Terminal::width()
{
    if (isatty(STDOUT_FILENO) != 1)
        return 0;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::optional<QByteArray> Terminal::readTyped()
{
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, 0) <= 0)
        return QByteArray();
    char bytes[256];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0)
        return std::nullopt;
    return QByteArray(bytes, static_cast<int>(count));
}
