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

/// How large the manifest may be, for everybody who fetches it. It has a few kilobytes.
constexpr qint64 manifestLimit = qint64(16) * 1024 * 1024;

/// Says in a few words for the log that the manifest is larger than that.
QString tooLarge();

/// Makes a request that follows redirects, but never from https to http, and refuses compression: Qt would
/// otherwise ask for it, and then neither sizes nor ranges are the file's.
QNetworkRequest request(const QUrl &url);

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
/// The first byte's position in such a value; the largest number if it is larger than that. Nothing when the
/// value has none.
std::optional<qint64> firstOfContentRange(const QByteArray &value);

/// The position behind the last byte in such a value, likewise.
std::optional<qint64> endOfContentRange(const QByteArray &value);

/// Returns why the body of an answer cannot be what was asked for, in a few words for the log; empty when it
/// can. `asked` is the position of the first byte that was asked for, or nothing when the whole file was. A
/// part that does not say where it begins counts as the right one.
QString problemOfBody(const QNetworkReply &reply, std::optional<qint64> asked);

/// Whether fewer bytes of the body came than the head announced. Qt can report a connection that was reset in
/// the middle as a clean end.
bool isCutShort(const QNetworkReply &reply, qint64 received);

/// Returns why a finished request for a whole file, of whose body `received` bytes were read, has not brought
/// it; empty when it has.
QString problemOfWhole(const QNetworkReply &reply, qint64 received);

} // namespace HttpAnswer
