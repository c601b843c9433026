#include "download/HttpAnswer.h"

#include <QList>
#include <QNetworkReply>

namespace {

bool isSuccessStatus(int status)
{
    return status >= 200 && status < 300;
}

} // namespace

QNetworkRequest HttpAnswer::request(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    return request;
}

QNetworkRequest HttpAnswer::byteExactRequest(const QUrl &url)
{
    QNetworkRequest exact = request(url);
    exact.setRawHeader("Accept-Encoding", "identity");
    return exact;
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
    const QByteArray trimmed = value.trimmed();
    if (!trimmed.toLower().startsWith("bytes "))
        return std::nullopt;
    bool isNumber = false;
    const qint64 first = trimmed.mid(6).split('-').first().trimmed().toLongLong(&isNumber);
    return isNumber && first >= 0 ? std::optional<qint64>(first) : std::nullopt;
}

qint64 HttpAnswer::firstByteOfBody(int status, const QByteArray &contentRange, qint64 asked)
{
    if (status != 206)
        return 0;
    return firstOfContentRange(contentRange).value_or(asked);
}

bool HttpAnswer::isCutShort(const QNetworkReply &reply, qint64 received)
{
    // Of a compressed body the head announces other bytes than are read.
    if (reply.hasRawHeader("Content-Encoding"))
        return false;
    const QVariant announced = reply.header(QNetworkRequest::ContentLengthHeader);
    return announced.isValid() && received < announced.toLongLong();
}
