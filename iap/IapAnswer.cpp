#include "iap/IapAnswer.h"

#include <QRegularExpression>

namespace {

QStringList entries(const QRegularExpression &pattern, const QString &text)
{
    QStringList found;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();)
        found.append(matches.next().captured(1).trimmed());
    return found;
}

} // namespace

IapAnswer readIapAnswer(const QString &text)
{
    static const QRegularExpression comPort(QStringLiteral("COM:\\s*([^;]+);"));
    static const QRegularExpression usbDevice(QStringLiteral("device:\\s*([^;]+);"));
    return {entries(comPort, text), entries(usbDevice, text)};
}
