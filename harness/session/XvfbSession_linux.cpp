#include "harness/session/XvfbSession.h"

#include <QDir>

namespace {
}

bool XvfbSession::start(const QSize &screen, int depth)
{
    const QString geometry = QStringLiteral("%1x%2x%3").arg(screen.width()).arg(screen.height()).arg(depth);
    // -noreset: otherwise the server resets when the last client disconnects, and the next one may connect at
    // that moment.
    const QStringList command{
        QStringLiteral("Xvfb"),    QStringLiteral("-displayfd"), QStringLiteral("1"),
        QStringLiteral("-screen"), QStringLiteral("0"),          geometry,
        QStringLiteral("-dpi"),    QStringLiteral("96"),         QStringLiteral("-nolisten"),
        QStringLiteral("tcp"),     QStringLiteral("-noreset")};
    // Servers in other network namespaces may choose the same number. They then compile their keyboard maps
    // to the same file, and one of them may find it half-written and fail.
    QByteArray number;
    for (int tries = 0; tries < 3 && number.isEmpty(); ++tries) {
        if (m_server.start(command))
            number = m_server.waitForFirstLine().trimmed();
    }
    if (number.isEmpty()) {
        m_error = m_server.errorText();
        return false;
    }
    m_display = QLatin1Char(':') + QString::fromLatin1(number);
    return true;
}

bool XvfbSession::useExistingDisplay()
{
    m_display = qEnvironmentVariable("DISPLAY");
    if (m_display.isEmpty())
        m_error = QStringLiteral("this process has no DISPLAY");
    m_authority = qEnvironmentVariable("XAUTHORITY", QDir::homePath() + QLatin1String("/.Xauthority"));
    return !m_display.isEmpty();
}

void XvfbSession::end()
{
    m_server.end(0);
    m_display.clear();
}
