#pragma once

#include "simulator/server/ServerRequest.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

/// A reply that the server is going to send. Initially it is correct; faults change it.
struct ServerReply
{
    enum class Ending {
        KeepAlive, ///< the next request may use the same connection
        Close,     ///< an orderly close after the last byte
        Reset,     ///< a reset after the last byte
        Stall,     ///< nothing more, and the connection stays open
    };

    int status = 200;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// The position of `body` in the file, and the size of the file; only valid for 200 and 206.
    qint64 firstByte = 0;
    qint64 fileSize = 0;
    /// The name of the file, for a fault that ignores the range.
    QString fileName;

    /// The number of bytes of `body` that are sent before the ending; -1 for all.
    qint64 cutAfter = -1;
    Ending ending = Ending::KeepAlive;
    /// Whether anything is sent at all.
    bool answers = true;
    bool chunked = false;
    /// To send slowly: the number of bytes, and the interval in milliseconds at which they are sent.
    qint64 dripBytes = 0;
    int dripMs = 0;

    void setHeader(const QByteArray &name, const QByteArray &value);
    void removeHeader(const QByteArray &name);
    /// Replaces the body, the status, and the headers that describe the body.
    void setPage(int newStatus, const QByteArray &type, const QByteArray &page);
    /// Sets the body, "Content-Length" and, for a part, "Content-Range".
    void setPart(const QByteArray &bytes, qint64 first, qint64 size, bool isPart);

    /// Returns the status line and the headers as they are sent.
    QByteArray head() const;

    /// Returns the correct reply to `request` with the file `fileName`.
    static ServerReply forFile(const ServerRequest &request, const QString &fileName);
};
