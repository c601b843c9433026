#include "download/FileDownloader.h"

#include "download/BodySlice.h"
#include "download/HttpAnswer.h"
#include "download/SegmentRanges.h"
#include "download/WriteAll.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QSslSocket>
#include <QTimer>

#include <algorithm>

FileDownloader::FileDownloader(const QUrl &url, const QString &path, QObject *parent)
    : QObject(parent),
      filePath(path),
      m_url(url)
{
    if (!QSslSocket::supportsSsl()) {
        qCritical() << "SSL is not supported!";
        return;
    }
    m_manager = new QNetworkAccessManager(this);
    connect(m_manager, &QNetworkAccessManager::finished, this, &FileDownloader::onFinished);
}

void FileDownloader::startDownload()
{
    if (!m_manager)
        return;
    const QFileInfo file(filePath);
    if (file.exists()) {
        m_resumeOffset = file.size();
        m_startFileSize = file.size();
    }
    QNetworkRequest request = HttpAnswer::byteExactRequest(m_url);
    request.setTransferTimeout(stallTimeout);
    if (m_resumeOffset > 0) {
        if (endByte == 0)
            request.setRawHeader("Range", openRangeHeader(m_resumeOffset));
        qDebug() << "Resuming from byte:" << m_resumeOffset;
    }
    if (endByte > 0) {
        if (m_resumeOffset > 0) {
            CurrentPackDownloadSize = m_resumeOffset;
            if (m_resumeOffset + startByte >= endByte) {
                qDebug() << "下载已完成";
                state = Finished;
                return;
            }
        }
        request.setRawHeader("Range", rangeHeader(startByte + m_resumeOffset, endByte));
    }
    m_wanted = (endByte > 0 ? startByte : 0) + m_resumeOffset;
    m_receivedBytes = 0;
    m_broughtBytes = 0;
    m_bodyLead = 0;
    m_isBodyLocated = false;
    m_isReadRetryArmed = false;

    m_reply = m_manager->get(request);
    m_reply->setReadBufferSize(HttpAnswer::readBufferSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &FileDownloader::onReadyRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &FileDownloader::onDownloadProgress);
    connect(m_reply, &QNetworkReply::errorOccurred, this, &FileDownloader::onErrorOccurred);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &FileDownloader::onMetaDataChanged);
    state = Running;
}

void FileDownloader::dropNetwork()
{
    if (m_reply)
        m_reply->disconnect(this);
    m_reply = nullptr;
    if (m_manager)
        m_manager->disconnect(this);
    delete m_manager;
    m_manager = nullptr;
}

void FileDownloader::onReadyRead()
{
    if (!m_reply)
        return;
    if (state == Paused) {
        // Dropped, so that the bounded buffer does not stop the transfer that pause() lets go on.
        m_reply->readAll();
        return;
    }
    switch (writeAvailable()) {
    case Writing::Done:
        return;
    case Writing::FileNotOpened:
        retryReadLater();
        return;
    case Writing::FileNotWritten:
        // The disk is full, say: what the reply goes on to bring would leave a hole.
        abandonReply();
        state = Failed;
        retryOrGiveUp();
        return;
    }
}

void FileDownloader::onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal)
{
    if (state == Paused)
        return;
    qDebug() << "Download progress:" << bytesReceived << "/" << bytesTotal;
    const bool isErrorPage = m_reply && !HttpAnswer::isSuccess(*m_reply);
    if (bytesReceived != 0 && bytesTotal != 0 && !isErrorPage) {
        CurrentPackDownloadSize = m_resumeOffset + std::max<qint64>(0, bytesReceived - m_bodyLead);
        if (endByte > 0)
            CurrentPackDownloadSize = std::min(CurrentPackDownloadSize, endByte - startByte);
    }
    qDebug().nospace() << "CurrentPackDownloadSize: " << CurrentPackDownloadSize;
    qDebug().nospace() << "m_totalSize: " << m_totalSize;
}

void FileDownloader::onMetaDataChanged()
{
    if (state == Paused || !m_reply)
        return;
    if (m_reply->hasRawHeader("Content-Range")) {
        const auto total = HttpAnswer::totalOfContentRange(m_reply->rawHeader("Content-Range"));
        if (total)
            m_totalSize = *total;
    } else if (m_reply->hasRawHeader("Content-Length")) {
        m_totalSize = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    }
    qDebug() << "Total file size:" << m_totalSize;
    if (HttpAnswer::isSuccess(*m_reply))
        locateBody();
}

void FileDownloader::onFinished(QNetworkReply *reply)
{
    if (reply != m_reply) {
        reply->deleteLater();
        return;
    }
    if (state == Paused)
        return;
    if (reply->error() != QNetworkReply::NoError) {
        qCritical().noquote() << "Download failed:" << reply->errorString();
        const int status = HttpAnswer::status(*reply);
        qDebug().nospace() << "state Code: " << status;
        state = status == 416 ? Finished : Failed;
    } else {
        finishWithoutError();
    }
    reply->disconnect(this);
    reply->deleteLater();
    m_reply = nullptr;
}

void FileDownloader::finishWithoutError()
{
    const Writing writing = writeAvailable();
    const bool isCut = HttpAnswer::isCutShort(*m_reply, m_receivedBytes);
    const bool isShort = endByte > 0 && m_wanted < endByte;
    if (writing == Writing::Done && !isCut && !(isShort && m_broughtBytes > 0)) {
        // A range that is short and brought nothing would not end otherwise; the sum over the whole
        // file decides whether it was right.
        qDebug() << "Download completed successfully!";
        state = Finished;
        return;
    }
    if (writing == Writing::Done) {
        m_lastProblem = QStringLiteral("the server sent less than it was asked for");
        qWarning().noquote() << "Transfer ended early at byte" << m_wanted;
    }
    state = Failed;
    retryOrGiveUp();
}

void FileDownloader::retryDownload()
{
    if (state == Paused)
        return;
    retryOrGiveUp();
}

void FileDownloader::retryOrGiveUp()
{
    if (retryCount >= maxRetries) {
        qCritical() << "Maximum retry attempts reached. Download failed.";
        m_hasGivenUp = true;
        return;
    }
    ++retryCount;
    qDebug() << "Retrying download. Attempt:" << retryCount;
    if (m_reply)
        m_reply->disconnect(this);
    QTimer::singleShot(retryDelay, this, [this] { startDownload(); });
}

void FileDownloader::retryReadLater()
{
    // The bounded buffer may be full, and then no readyRead comes any more.
    if (m_isReadRetryArmed)
        return;
    m_isReadRetryArmed = true;
    QTimer::singleShot(retryDelay, m_reply, [this, reply = m_reply.data()] {
        if (reply != m_reply)
            return;
        m_isReadRetryArmed = false;
        onReadyRead();
    });
}

void FileDownloader::onErrorOccurred(QNetworkReply::NetworkError code)
{
    if (state == Paused || !m_reply)
        return;
    qCritical() << "Network error occurred:" << code;
    HttpAnswer::ignoreSslErrorsOnceAnswered(*m_reply);
    if (state == Finished || HttpAnswer::status(*m_reply) == 416) {
        qDebug() << "you download success";
        state = Finished;
        return;
    }
    m_lastProblem = m_reply->errorString();
    writeAvailable();
    state = Failed;
    retryOrGiveUp();
}

void FileDownloader::pause()
{
    if (state != Running)
        return;
    state = Paused;
    if (m_reply)
        HttpAnswer::ignoreSslErrorsOnceAnswered(*m_reply);
    qDebug() << "Download paused";
}

void FileDownloader::resume()
{
    if (state != Paused)
        return;
    qDebug() << "Resuming download";
    state = Running;
    abandonReply();
    startDownload();
}

void FileDownloader::locateBody()
{
    if (m_isBodyLocated)
        return;
    m_isBodyLocated = true;
    m_bodyPosition = HttpAnswer::firstByteOfBody(HttpAnswer::status(*m_reply),
                                                 m_reply->rawHeader("Content-Range"), m_wanted);
    m_bodyLead = std::max<qint64>(0, m_wanted - m_bodyPosition);
}

FileDownloader::Writing FileDownloader::writeAvailable()
{
    if (m_reply->bytesAvailable() == 0)
        return Writing::Done;
    if (!HttpAnswer::isSuccess(*m_reply)) {
        m_reply->readAll(); // an error page is no part of the file
        return Writing::Done;
    }
    locateBody();
    const qint64 available = m_reply->bytesAvailable();
    const BodySlice slice = cutBody(m_bodyPosition, available, m_wanted, endByte);
    QFile file(filePath);
    // Nothing wanted makes no file either: an empty part would pass for a complete one.
    if (slice.take > 0 && !file.open(QIODevice::Append | QIODevice::Unbuffered)) {
        qCritical().noquote() << "Unable to open file for writing:" << filePath;
        HttpAnswer::ignoreSslErrorsOnceAnswered(*m_reply);
        m_lastProblem = m_fileProblem = filePath + QStringLiteral(": ") + file.errorString();
        return Writing::FileNotOpened;
    }
    const QByteArray data = m_reply->read(available);
    m_bodyPosition += available;
    m_receivedBytes += available;
    if (slice.take == 0)
        return Writing::Done;
    const qint64 written = writeAll(file, data.constData() + slice.skip, slice.take);
    m_wanted += written;
    m_broughtBytes += written;
    if (written != slice.take) {
        m_lastProblem = m_fileProblem = filePath + QStringLiteral(": ") + file.errorString();
        qCritical().noquote() << "Unable to write file:" << m_lastProblem;
        return Writing::FileNotWritten;
    }
    return Writing::Done;
}

void FileDownloader::abandonReply()
{
    const QPointer<QNetworkReply> reply = m_reply;
    m_reply = nullptr;
    if (!reply)
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}
