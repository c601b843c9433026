#pragma once

#include "simulator/server/ServerRequest.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

/// What the server is about to send. It starts as the right answer; faults change it.
struct ServerReply
{
    enum class Ending {
        KeepAlive, ///< the next request may come on the same connection
        Close,     ///< an orderly close after the last byte
        Reset,     ///< a reset after the last byte
        Stall,     ///< nothing more, and the connection stays open
    };

    int status = 200;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// First byte of `body` in the file, and the file's size; meaningful for 200 and 206.
    qint64 firstByte = 0;
    qint64 fileSize = 0;
    /// The whole file, for a fault that ignores the range.
    QString fileName;

    /// Bytes of `body` that are sent before the ending; -1 for all.
    qint64 cutAfter = -1;
    Ending ending = Ending::KeepAlive;
    /// False when not even the status line is sent.
    bool answers = true;
    bool chunked = false;
    /// With a pace, this many bytes every so many milliseconds.
    qint64 dripBytes = 0;
    int dripMs = 0;

    void setHeader(const QByteArray &name, const QByteArray &value);
    void removeHeader(const QByteArray &name);
    /// Replaces body and status, and the headers that describe the body.
    void setPage(int newStatus, const QByteArray &type, const QByteArray &page);
    /// Sets body, "Content-Length" and, for a part, "Content-Range".
    void setPart(const QByteArray &bytes, qint64 first, qint64 size, bool isPart);

    /// Status line and headers as they go over the wire.
    QByteArray head() const;

    /// The right answer to `request` from the file `fileName`.
    static ServerReply forFile(const ServerRequest &request, const QString &fileName);
};
