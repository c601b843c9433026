#include "download/FileSizeFetcher.h"

#include "download/HttpAnswer.h"

#include <QDebug>
#include <QNetworkAccessManager>
#include <QTimer>

#include <algorithm>

namespace {

constexpr qint64 readBufferSize = qint64(16) * 1024;
constexpr int dropIntervalMs = 250;

} // namespace

FileSizeFetcher::FileSizeFetcher(const QUrl &url, QObject *parent)
    : QObject(parent),
      m_url(url),
      m_manager(new QNetworkAccessManager(this)),
      m_dropTimer(new QTimer(this))
{
    connect(m_dropTimer, &QTimer::timeout, this, &FileSizeFetcher::dropBody);
    connect(m_manager, &QNetworkAccessManager::finished, this, &FileSizeFetcher::onFinished);
}

void FileSizeFetcher::fetchFileSize()
{
    m_reply = HttpAnswer::get(*m_manager, HttpAnswer::request(m_url));
    // Set at once: bytes arrive in the buffer before this thread handles the headers.
    m_reply->setReadBufferSize(readBufferSize);
    m_isSizeKnown = false;
    m_dropTimer->stop();
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &FileSizeFetcher::onMetaDataChanged);
    connect(m_reply, &QNetworkReply::readyRead, this, &FileSizeFetcher::dropBody);
}

void FileSizeFetcher::dropBody()
{
    if (!m_reply)
        return;
    qint64 allowed = m_reply->bytesAvailable();
    if (m_isSizeKnown)
        allowed = std::min(allowed, bodyBytesPerSecond * m_sinceSize.elapsed() / 1000 - m_droppedBytes);
    if (allowed > 0)
        m_droppedBytes += m_reply->read(allowed).size();
}

void FileSizeFetcher::onMetaDataChanged()
{
    if (!m_reply)
        return;
    // The headers of a redirect or an error page contain a different size.
    if (!HttpAnswer::isSuccess(*m_reply))
        return;
    if (m_reply->hasRawHeader("Content-Length")) {
        fileSize = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
        qDebug() << "File size:" << fileSize << "bytes";
    } else if (m_reply->hasRawHeader("Content-Range")) {
        const auto total = HttpAnswer::totalOfContentRange(m_reply->rawHeader("Content-Range"));
        if (total) {
            fileSize = *total;
            qDebug() << "File size:" << fileSize << "bytes";
        } else {
            qCritical() << "Could not determine file size from Content-Range header.";
        }
    }
    HttpAnswer::ignoreSslErrorsOnceAnswered(*m_reply);
    if (fileSize <= 0 || m_isSizeKnown)
        return;
    m_isSizeKnown = true;
    m_droppedBytes = 0;
    m_sinceSize.start();
    m_dropTimer->start(dropIntervalMs);
}

void FileSizeFetcher::onFinished(QNetworkReply *reply)
{
    reply->deleteLater();
    m_dropTimer->stop();
    if (reply->error() == QNetworkReply::NoError) {
        qDebug() << "Request completed.";
        retryCount = 0;
        return;
    }
    qCritical().noquote() << "Error fetching file size:" << reply->errorString();
    if (retryCount >= maxRetries) {
        qCritical() << "Max retries reached. Giving up.";
        return;
    }
    ++retryCount;
    qDebug() << "Retrying... Attempt" << retryCount << "of" << maxRetries;
    fetchFileSize();
}
