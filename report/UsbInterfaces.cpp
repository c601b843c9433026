#include "report/UsbInterfaces.h"

#include <QJsonObject>

namespace {

constexpr int interfaceType = 4;
constexpr int endpointType = 5;
constexpr int interfaceBytes = 9;
constexpr int endpointBytes = 7;

QString hexadecimal(int byte)
{
    return QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0'));
}

} // namespace

QJsonArray UsbInterfaces::of(const QByteArray &configuration)
{
    const auto byte = [&configuration](int at) {
        return static_cast<int>(static_cast<quint8>(configuration.at(at)));
    };
    QJsonArray interfaces;
    QJsonArray endpoints;
    const auto addEndpointsToLast = [&] {
        if (!interfaces.isEmpty()) {
            QJsonObject last = interfaces.last().toObject();
            last.insert(QStringLiteral("endpoints"), endpoints);
            interfaces.replace(interfaces.size() - 1, last);
        }
        endpoints = QJsonArray();
    };
    int at = 0;
    while (at + 2 <= configuration.size()) {
        const int length = byte(at);
        const int type = byte(at + 1);
        if (length < 2 || at + length > configuration.size())
            break;
        if (type == interfaceType && length >= interfaceBytes) {
            addEndpointsToLast();
            interfaces.append(QJsonObject{{QStringLiteral("number"), byte(at + 2)},
                                          {QStringLiteral("alternate"), byte(at + 3)},
                                          {QStringLiteral("class"), byte(at + 5)},
                                          {QStringLiteral("subClass"), byte(at + 6)},
                                          {QStringLiteral("protocol"), byte(at + 7)}});
        } else if (type == endpointType && length >= endpointBytes && !interfaces.isEmpty()) {
            endpoints.append(hexadecimal(byte(at + 2)));
        }
        at += length;
    }
    addEndpointsToLast();
    return interfaces;
}
