#include "harness/session/XvfbSession.h"

// On Windows there is only the display of the user's session; no other can be started. Programs that must not
// use it draw off screen.

bool XvfbSession::start(const QSize & /*screen*/, int /*depth*/)
{
    m_error = QStringLiteral("no separate display can be started on this platform");
    return false;
}

bool XvfbSession::useExistingDisplay()
{
    m_error = QStringLiteral("the display of this platform has no name that could be passed to a program");
    return false;
}

void XvfbSession::end() {}
