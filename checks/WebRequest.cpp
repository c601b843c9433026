#include "checks/WebRequest.h"

#include "download/HttpAnswer.h"
#include "support/process/ShutdownFlag.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace {

QString textOfTimeout(int limit)
{
    return QStringLiteral("no answer within %1 s").arg(limit / 1000.0);
}

/// One request in a local event loop.
class Request
{
public:
    Request(const QString &address, const std::optional<SegmentRange> &part)
    {
        QNetworkRequest request = HttpAnswer::request(QUrl(address));
        if (part)
            request.setRawHeader("Range", rangeHeader(part->start, part->end));
        m_reply.reset(HttpAnswer::get(m_manager, request));
        m_reply->setReadBufferSize(HttpAnswer::readBufferSize);
        QObject::connect(m_reply.get(), &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
        QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, &m_loop, &QEventLoop::quit,
                         Qt::QueuedConnection);
    }

    QNetworkReply &reply() { return *m_reply; }
    QEventLoop &loop() { return m_loop; }

    /// Returns whether the request ended, or the loop was left, within `limit` milliseconds.
    bool run(int limit)
    {
        bool isLate = false;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, &m_loop, [&] {
            isLate = true;
            m_loop.quit();
        });
        timer.start(limit);
        if (!m_reply->isFinished() && !ShutdownFlag::instance().isRaised())
            m_loop.exec();
        return !isLate;
    }

    WebAnswer answer() const
    {
        WebAnswer answer;
        answer.status = HttpAnswer::status(*m_reply);
        answer.contentRange = m_reply->rawHeader("Content-Range");
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid())
            answer.contentLength = length.toLongLong();
        return answer;
    }

private:
    QNetworkAccessManager m_manager;
    QEventLoop m_loop;
    std::unique_ptr<QNetworkReply> m_reply;
};

} // namespace

bool WebRequest::isAddress(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty();
}

WebAnswer WebRequest::fetch(const QString &address, int limit)
{
    Request request(address, std::nullopt);
    QNetworkReply &reply = request.reply();
    QByteArray body;
    const auto takeBody = [&] {
        body += reply.readAll();
        if (body.size() > HttpAnswer::manifestLimit)
            request.loop().quit();
    };
    QObject::connect(&reply, &QNetworkReply::readyRead, &request.loop(), takeBody);
    const bool isInTime = request.run(limit);
    if (reply.isFinished())
        takeBody();
    WebAnswer answer = request.answer();
    if (!isInTime)
        answer.problem = textOfTimeout(limit);
    else if (body.size() > HttpAnswer::manifestLimit)
        answer.problem = HttpAnswer::tooLarge();
    else if (!reply.isFinished())
        answer.problem = QStringLiteral("interrupted");
    else
        answer.problem = HttpAnswer::problemOfWhole(reply, body.size());
    answer.body = body;
    return answer;
}

WebAnswer WebRequest::head(const QString &address, const std::optional<SegmentRange> &part, int limit)
{
    Request request(address, part);
    QNetworkReply &reply = request.reply();
    QObject::connect(&reply, &QNetworkReply::metaDataChanged, &request.loop(), [&] {
        // The headers of a redirect are not the answer yet.
        if (HttpAnswer::isSuccess(reply))
            request.loop().quit();
    });
    const bool isInTime = request.run(limit);
    WebAnswer answer = request.answer();
    if (!isInTime)
        answer.problem = textOfTimeout(limit);
    else if (HttpAnswer::isSuccess(reply))
        answer.problem =
            HttpAnswer::problemOfBody(reply, part ? std::optional<qint64>(part->start) : std::nullopt);
    else if (!reply.isFinished())
        answer.problem = QStringLiteral("interrupted");
    else
        answer.problem = reply.error() != QNetworkReply::NoError
                             ? reply.errorString()
                             : HttpAnswer::problemOfBody(reply, std::nullopt);
    return answer;
}
