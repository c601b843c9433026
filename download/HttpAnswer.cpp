#include "download/HttpAnswer.h"

#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <limits>

namespace {

bool isSuccessStatus(int status)
{
    return status >= 200 && status < 300;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Returns the texts before and after the "-" of a "Content-Range" value; an empty list if its unit is not
/// bytes.
QList<QByteArray> bounds(const QByteArray &contentRange)
{
    const QByteArray trimmed = contentRange.trimmed();
    if (!trimmed.toLower().startsWith("bytes "))
        return {};
    return trimmed.mid(6).split('/').first().split('-');
}

/// Parses a text that consists of digits only. Returns the largest number if the value overflows.
std::optional<qint64> number(const QByteArray &text)
{
    const QByteArray digits = text.trimmed();
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    bool fits = false;
    const qint64 value = digits.toLongLong(&fits);
    return fits ? value : std::numeric_limits<qint64>::max();
}

bool isEncoded(const QNetworkReply &reply)
{
    const QByteArray encoding = reply.rawHeader("Content-Encoding").trimmed().toLower();
    return !encoding.isEmpty() && encoding != "identity";
}

} // namespace

QString HttpAnswer::tooLarge()
{
    return QStringLiteral("the file is larger than %1 MiB").arg(manifestLimit / (qint64(1024) * 1024));
}

QNetworkRequest HttpAnswer::request(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

QNetworkReply *HttpAnswer::get(QNetworkAccessManager &manager, const QNetworkRequest &request)
{
    QNetworkReply *reply = manager.get(request);
    // Qt requests the target from the event loop, so this takes effect before that.
    QObject::connect(reply, &QNetworkReply::redirected, reply,
                     [reply] { QObject::disconnect(reply, SIGNAL(startHttpRequest()), nullptr, nullptr); });
    return reply;
}

int HttpAnswer::status(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool HttpAnswer::isSuccess(const QNetworkReply &reply)
{
    return isSuccessStatus(status(reply));
}

void HttpAnswer::ignoreSslErrorsOnceAnswered(QNetworkReply &reply)
{
    if (isSuccess(reply))
        reply.ignoreSslErrors();
}

std::optional<qint64> HttpAnswer::totalOfContentRange(const QByteArray &value)
{
    const QList<QByteArray> parts = value.split('/');
    if (parts.size() != 2)
        return std::nullopt;
    return parts.at(1).toLongLong();
}

std::optional<qint64> HttpAnswer::firstOfContentRange(const QByteArray &value)
{
    return number(bounds(value).value(0));
}

std::optional<qint64> HttpAnswer::endOfContentRange(const QByteArray &value)
{
    const std::optional<qint64> last = number(bounds(value).value(1));
    if (!last || *last == std::numeric_limits<qint64>::max())
        return last;
    return *last + 1;
}

QString HttpAnswer::problemOfBody(const QNetworkReply &reply, std::optional<qint64> asked)
{
    if (!isSuccess(reply))
        return QStringLiteral("the server answered with status %1").arg(status(reply));
    if (isEncoded(reply))
        return QStringLiteral("the server compressed what it sent");
    if (status(reply) != 206)
        return {};
    if (!asked)
        return QStringLiteral("the server sent a part of the file only");
    if (reply.rawHeader("Content-Type").trimmed().toLower().startsWith("multipart/"))
        return QStringLiteral("the server sent several parts in one answer");
    if (firstOfContentRange(reply.rawHeader("Content-Range")).value_or(*asked) != *asked)
        return QStringLiteral("the server sent another part of the file");
    return {};
}

bool HttpAnswer::isCutShort(const QNetworkReply &reply, qint64 received)
{
    // Chunks have their own lengths, and a Content-Length beside them must be ignored.
    if (reply.rawHeader("Transfer-Encoding").toLower().contains("chunked"))
        return false;
    const QVariant announced = reply.header(QNetworkRequest::ContentLengthHeader);
    return announced.isValid() && received < announced.toLongLong();
}

QString HttpAnswer::problemOfWhole(const QNetworkReply &reply, qint64 received)
{
    if (reply.error() != QNetworkReply::NoError)
        return reply.errorString();
    QString problem = problemOfBody(reply, std::nullopt);
    if (problem.isEmpty() && isCutShort(reply, received))
        return QStringLiteral("the connection ended early");
    return problem;
}
