#pragma once

#include "simulator/server/ServerReply.h"

#include <QString>

#include <optional>

/// A fault of the server, and the requests that it affects. It is written as
///
///     NAME[:key=value[,key=value…]]
///
/// where these keys select the requests
///   path=PATTERN   only requests whose path matches (* and ? as in a shell; default: every path)
///   range=I        only requests whose first byte is in the I-th (from 0) of `of` equal parts
///   of=N           the number of those parts (default 10)
///   whole=1        only requests without a range
///   nth=K          only from the K-th matching request on (default 1)
///   times=C        only C times (default: always)
/// and the keys bytes=K, ms=T, to=TARGET, name=HEADER and value=TEXT have the meaning that help() describes
/// for each fault. Several faults may affect one request, in the given order.
class ServerFault
{
public:
    /// Parses a fault. On failure returns nothing and sets `error`.
    static std::optional<ServerFault> parse(const QString &text, QString *error);

    /// Returns a line for each fault: its name, its keys and its effect.
    static QString help();

    /// Returns whether the fault affects a connection as soon as it is accepted. Such a fault does not depend
    /// on the path.
    bool isAtAccept() const;
    /// Returns whether the fault affects this request or connection, and counts the request.
    bool registerRequest(const ServerRequest &request, qint64 fileSize);
    /// Changes `reply` according to the fault.
    void apply(ServerReply &reply) const;

    // The values from the text.
    QString path = QStringLiteral("*");
    int range = -1;
    int of = 10;
    int whole = 0;
    int nth = 1;
    int times = -1;
    qint64 bytes = 0;
    int ms = 10;
    QString to;
    QString name;
    QString value;

private:
    int m_kind = 0;
    int m_matches = 0;
    int m_strikes = 0;
};
