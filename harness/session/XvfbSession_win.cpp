#include "harness/session/XvfbSession.h"

// A session's display is the one that its user is logged in on; another cannot be started. What
// has to run without it draws off screen.

bool XvfbSession::start(const QSize & /*screen*/, int /*depth*/)
{
    m_error = QStringLiteral("there is no display of one's own to start on this platform");
    return false;
}

bool XvfbSession::useExistingDisplay()
{
    m_error = QStringLiteral("the display of this platform has no name that a program could be given");
    return false;
}

void XvfbSession::end() {}
