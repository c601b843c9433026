#include "tests/cli/PseudoTerminal_linux.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

PseudoTerminal::PseudoTerminal(int columns)
    : m_keyboard(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    if (m_keyboard < 0 || grantpt(m_keyboard) != 0 || unlockpt(m_keyboard) != 0)
        return;
    const char *name = ptsname(m_keyboard);
    m_program = name ? open(name, O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
    winsize size{};
    size.ws_row = 24;
    size.ws_col = static_cast<unsigned short>(columns);
    if (m_program >= 0 && ioctl(m_program, TIOCSWINSZ, &size) == 0)
        m_device = QString::fromLatin1(name);
}

PseudoTerminal::~PseudoTerminal()
{
    for (const int descriptor : {m_program, m_keyboard}) {
        if (descriptor >= 0)
            close(descriptor);
    }
}

const QByteArray &PseudoTerminal::screen()
{
    char bytes[4096];
    ssize_t count = 0;
    while ((count = read(m_keyboard, bytes, sizeof bytes)) > 0)
        m_screen.append(bytes, static_cast<int>(count));
    return m_screen;
}

bool PseudoTerminal::type(const QByteArray &keys)
{
    return write(m_keyboard, keys.constData(), static_cast<std::size_t>(keys.size())) == keys.size();
}
