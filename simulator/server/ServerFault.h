#pragma once

#include "simulator/server/ServerReply.h"

#include <QString>

#include <optional>

/// One fault that is switched on, and when it strikes. Written as
///
///     NAME[:key=value[,key=value…]]
///
/// where the keys that say when are
///   path=PATTERN   only requests whose path matches (* and ? as in a shell; default: every path)
///   range=I        only requests whose first byte lies in the I-th (from 0) of `of` equal parts
///   of=N           the number of those parts (default 10)
///   whole=1        only requests without a range
///   nth=K          only from the K-th matching request on (default 1)
///   times=C        only so often (default: always)
/// and the keys that say what are bytes=K, ms=T, to=TARGET, name=HEADER and value=TEXT, as the fault's
/// description in faultHelp() says. Several faults may strike one request, in the order given.
class ServerFault
{
public:
    /// Reads a fault from its text; on failure nothing, and `error` says why.
    static std::optional<ServerFault> parse(const QString &text, QString *error);

    /// One line for each fault there is: its name, its keys, what it does.
    static QString help();

    /// Whether it strikes a connection as soon as that is accepted. Such a fault knows no path.
    bool isAtAccept() const;
    /// Whether this request or connection is hit; counts it.
    bool strikes(const ServerRequest &request, qint64 fileSize);
    /// Spoils `reply`.
    void apply(ServerReply &reply) const;

    // What the text said.
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
