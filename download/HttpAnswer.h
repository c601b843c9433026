#pragma once

#include <QByteArray>
#include <QNetworkRequest>

#include <optional>

class QNetworkReply;
class QUrl;

/// What the download classes have in common in asking and in reading an answer's head.
namespace HttpAnswer {

/// As much of a body as a reply may hold before it is read: enough for full speed.
constexpr qint64 readBufferSize = qint64(1024) * 1024;

/// A request that follows redirects, but never from https to http.
QNetworkRequest request(const QUrl &url);
/// The same for a body whose bytes are counted: the toolkit would otherwise ask for compression,
/// and then neither sizes nor ranges are the file's.
QNetworkRequest byteExactRequest(const QUrl &url);

/// HTTP status, or 0 before there is one.
int status(const QNetworkReply &reply);
/// Whether a 2xx head has arrived.
bool isSuccess(const QNetworkReply &reply);

/// Calls the reply's ignoreSslErrors() once a 2xx head has arrived, when it changes nothing any more.
/// Earlier, before the handshake or at a redirect, it would switch the certificate checks off.
void ignoreSslErrorsOnceAnswered(QNetworkReply &reply);

/// The whole file's size in a "Content-Range" value such as "bytes 0-99/5000": what follows the one
/// slash, 0 when that is no number. Nothing when there is not exactly one slash.
std::optional<qint64> totalOfContentRange(const QByteArray &value);
/// The first byte's position in such a value; nothing when it has none.
std::optional<qint64> firstOfContentRange(const QByteArray &value);

/// Position in the remote file of a 2xx body's first byte: what "Content-Range" says for a part (or
/// `asked`, when it says nothing usable), else the file's start.
qint64 firstByteOfBody(int status, const QByteArray &contentRange, qint64 asked);

/// Whether fewer bytes of the body came than the head announced. The toolkit can report a connection
/// that was reset in the middle as a clean end.
bool isCutShort(const QNetworkReply &reply, qint64 received);

} // namespace HttpAnswer
