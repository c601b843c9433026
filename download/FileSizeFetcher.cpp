#include "download/FileSizeFetcher.h"

#include "download/HttpAnswer.h"

#include <QDebug>
#include <QNetworkAccessManager>

FileSizeFetcher::FileSizeFetcher(const QUrl &url, QObject *parent)
    : QObject(parent),
      m_url(url),
      m_manager(new QNetworkAccessManager(this))
{
    connect(m_manager, &QNetworkAccessManager::finished, this, &FileSizeFetcher::onFinished);
}

void FileSizeFetcher::fetchFileSize()
{
    m_reply = m_manager->get(HttpAnswer::byteExactRequest(m_url));
    m_reply->setReadBufferSize(HttpAnswer::readBufferSize);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &FileSizeFetcher::onMetaDataChanged);
    QNetworkReply *reply = m_reply;
    connect(reply, &QNetworkReply::readyRead, this, [reply] { reply->readAll(); });
}

void FileSizeFetcher::onMetaDataChanged()
{
    if (!m_reply)
        return;
    // The head of a redirect or of an error page tells the size of something else.
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
}

void FileSizeFetcher::onFinished(QNetworkReply *reply)
{
    reply->deleteLater();
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
