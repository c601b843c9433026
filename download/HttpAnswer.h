#pragma once

#include <QByteArray>
#include <QNetworkRequest>

#include <optional>

class QNetworkAccessManager;
class QNetworkReply;
class QUrl;

/// Functions shared by the download classes: they create requests and evaluate the headers of responses.
namespace HttpAnswer {

/// The size of a reply's read buffer. It suffices for full speed.
constexpr qint64 readBufferSize = qint64(1024) * 1024;

/// The maximum size of the manifest, for all who fetch it. A real one has a few kilobytes.
constexpr qint64 manifestLimit = qint64(16) * 1024 * 1024;

/// Returns the error text for a manifest that exceeds manifestLimit.
QString tooLarge();

/// Creates a request that follows redirects, though never from https to http, and does not accept
/// compression. Qt would accept it by default, and sizes and ranges would then not be those of the file.
QNetworkRequest request(const QUrl &url);

/// Sends a request. Use it for every request that may be redirected: Qt 5 starts the one to the target with a
/// signal to which the receiver of the redirect is still connected, and that receiver repeats its own request
/// if it has not been deleted by then. The reply would mix the headers and bodies of both answers.
QNetworkReply *get(QNetworkAccessManager &manager, const QNetworkRequest &request);

/// Returns the HTTP status, or 0 if there is none yet.
int status(const QNetworkReply &reply);
/// Returns whether the headers of a 2xx response have arrived.
bool isSuccess(const QNetworkReply &reply);

/// Calls the reply's ignoreSslErrors() if the headers of a 2xx response have arrived, when the call has no
/// effect any more. Before the handshake or at a redirect it would disable the certificate checks.
void ignoreSslErrorsOnceAnswered(QNetworkReply &reply);

/// Returns the size of the whole file in a "Content-Range" value such as "bytes 0-99/5000": the number after
/// the slash, or 0 if that is not a number. Returns nothing unless there is exactly one slash.
std::optional<qint64> totalOfContentRange(const QByteArray &value);
/// Returns the position of the first byte in such a value, or the largest number if it overflows. Returns
/// nothing if the value has no position.
std::optional<qint64> firstOfContentRange(const QByteArray &value);

/// Returns the position after the last byte in such a value; otherwise like firstOfContentRange().
std::optional<qint64> endOfContentRange(const QByteArray &value);

/// Returns why the body of a response is not what was requested, in a few words for the log, or an empty
/// string. `asked` is the position of the first requested byte, or nothing if the whole file was requested. A
/// part without a start position counts as the requested one.
QString problemOfBody(const QNetworkReply &reply, std::optional<qint64> asked);

/// Returns whether the body has fewer bytes than the headers announced. Qt may report a connection that was
/// reset in the middle as a normal end.
bool isCutShort(const QNetworkReply &reply, qint64 received);

/// Returns why a finished request for a whole file has failed, or an empty string. `received` is the number
/// of bytes of the body that were read.
QString problemOfWhole(const QNetworkReply &reply, qint64 received);

} // namespace HttpAnswer
