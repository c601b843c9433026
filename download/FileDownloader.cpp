#include "download/FileDownloader.h"

#include "download/BodySlice.h"
#include "download/HttpAnswer.h"
#include "download/SegmentRanges.h"
#include "download/WriteAll.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QTimer>

#include <algorithm>
#include <utility>

FileDownloader::FileDownloader(const QUrl &url, const QString &path, QObject *parent, bool hasTls)
    : QObject(parent),
      filePath(path),
      m_url(url),
      m_hasTls(hasTls)
{
    if (!hasTls) {
        qCritical() << "SSL is not supported!";
        return;
    }
    m_manager = new QNetworkAccessManager(this);
    connect(m_manager, &QNetworkAccessManager::finished, this, &FileDownloader::onFinished);
    m_stallTimer = new QTimer(this);
    m_stallTimer->setSingleShot(true);
    // Queued, so that bytes that arrived while this thread was busy are handled first.
    connect(m_stallTimer, &QTimer::timeout, this, &FileDownloader::failOnStall, Qt::QueuedConnection);
}

void FileDownloader::startDownload()
{
    if (!m_hasTls) {
        m_lastProblem = QStringLiteral("SSL is not supported!");
        giveUp();
        return;
    }
    if (!m_manager)
        return;
    const QFileInfo file(filePath);
    if (file.exists()) {
        m_resumeOffset = file.size();
        m_startFileSize = file.size();
    }
    QNetworkRequest request = HttpAnswer::request(m_url);
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
    m_asked = request.hasRawHeader("Range") ? std::optional<qint64>(m_wanted) : std::nullopt;
    m_receivedBytes = 0;
    m_broughtBytes = 0;
    m_body.reset();
    m_isReadRetryArmed = false;
    sendRequest(request);
    state = Running;
}

void FileDownloader::sendRequest(const QNetworkRequest &request)
{
    m_reply = HttpAnswer::get(*m_manager, request);
    m_reply->setReadBufferSize(HttpAnswer::readBufferSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &FileDownloader::onReadyRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &FileDownloader::onDownloadProgress);
    connect(m_reply, &QNetworkReply::errorOccurred, this, &FileDownloader::onErrorOccurred);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &FileDownloader::onMetaDataChanged);
    m_stallTimer->start(stallTimeout);
}

void FileDownloader::dropNetwork()
{
    if (m_reply)
        m_reply->disconnect(this);
    m_reply = nullptr;
    if (m_manager)
        m_manager->disconnect(this);
    delete std::exchange(m_manager, nullptr);
    delete std::exchange(m_stallTimer, nullptr);
}

void FileDownloader::onReadyRead()
{
    if (!m_reply)
        return;
    if (state == Paused) {
        // Discarded: pause() does not stop the transfer, and a full buffer would.
        m_reply->readAll();
        return;
    }
    switch (writeAvailable()) {
    case Writing::Done:
        return;
    case Writing::RangeComplete:
        // Do not wait for more: the server may send without end.
        abandonReply();
        finish();
        return;
    case Writing::FileNotOpened:
        retryReadLater();
        return;
    case Writing::Unusable:
        reportUnusable();
        [[fallthrough]];
    case Writing::FileNotWritten:
        // If the disk was full, the following bytes of the reply would leave a hole.
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
    // Not bytesReceived: those bytes may belong to an error page, be outside the range or be unwritten.
    if (bytesReceived != 0 && bytesTotal != 0)
        CurrentPackDownloadSize = bytesOnDisk();
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
    m_stallTimer->stop();
    reply->disconnect(this);
    reply->deleteLater();
    m_reply = nullptr;
}

void FileDownloader::finishWithoutError()
{
    const Writing writing = writeAvailable();
    if (!body().problem.isEmpty()) {
        reportUnusable(); // even if the response has no bytes at all
    } else if (writing == Writing::Done || writing == Writing::RangeComplete) {
        const bool isCut = HttpAnswer::isCutShort(*m_reply, m_receivedBytes);
        const bool isShort = body().wantedEnd > 0 && m_wanted < body().wantedEnd;
        if (!isCut && !(isShort && m_broughtBytes > 0)) {
            // A short range without any bytes counts as finished, because retries would never end. The MD5 of
            // the whole file shows whether it is complete.
            finish();
            return;
        }
        m_lastProblem = QStringLiteral("the server sent less than it was asked for");
        qWarning().noquote() << "Transfer ended early at byte" << m_wanted;
    }
    state = Failed;
    retryOrGiveUp();
}

void FileDownloader::finish()
{
    qDebug() << "Download completed successfully!";
    state = Finished;
}

void FileDownloader::failOnStall()
{
    // No bytes are expected while paused. If the timer is active, bytes have arrived and restarted it.
    if (!m_reply || state == Paused || m_stallTimer->isActive())
        return;
    m_reply->abort(); // ends in onErrorOccurred and onFinished like any other failure
    m_lastProblem = QStringLiteral("the server sent nothing for %1 s").arg(stallTimeout / 1000.0);
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
        giveUp();
        return;
    }
    ++retryCount;
    qDebug() << "Retrying download. Attempt:" << retryCount;
    if (m_reply)
        m_reply->disconnect(this);
    QTimer::singleShot(retryDelay, this, [this] { startDownload(); });
}

void FileDownloader::giveUp()
{
    state = Failed;
    m_hasGivenUp = true;
}

void FileDownloader::retryReadLater()
{
    // Without this, a full buffer would prevent all further readyRead signals.
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
    if (writeAvailable() == Writing::Unusable)
        reportUnusable();
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

BodyPlace &FileDownloader::body()
{
    if (!m_body)
        m_body = BodyPlace::of(*m_reply, m_asked, endByte);
    return *m_body;
}

FileDownloader::Writing FileDownloader::writeAvailable()
{
    if (!m_reply->isOpen() || m_reply->bytesAvailable() == 0)
        return Writing::Done; // an aborted reply is closed
    if (!HttpAnswer::isSuccess(*m_reply)) {
        m_reply->readAll(); // an error page is not part of the file
        return Writing::Done;
    }
    BodyPlace &place = body();
    if (!place.problem.isEmpty())
        return Writing::Unusable;
    if (place.usableEnd <= 0 || place.position < place.usableEnd)
        m_stallTimer->start(stallTimeout); // bytes after the end do not count
    BodySlice slice = cutBody(place.position, m_reply->bytesAvailable(), m_wanted, place.usableEnd);
    QFile file(filePath);
    // Without wanted bytes no file is created: an empty part would be taken for a complete one.
    if (slice.take > 0 && !file.open(QIODevice::Append | QIODevice::Unbuffered)) {
        qCritical().noquote() << "Unable to open file for writing:" << filePath;
        HttpAnswer::ignoreSslErrorsOnceAnswered(*m_reply);
        m_lastProblem = m_fileProblem = filePath + QStringLiteral(": ") + file.errorString();
        return Writing::FileNotOpened;
    }
    const QByteArray data = m_reply->readAll();
    slice = cutBody(place.position, data.size(), m_wanted, place.usableEnd);
    place.position += data.size();
    m_receivedBytes += data.size();
    if (slice.take == 0)
        return isRangeExceeded() ? Writing::RangeComplete : Writing::Done;
    const qint64 written = writeAll(file, data.constData() + slice.skip, slice.take);
    m_wanted += written;
    m_broughtBytes += written;
    CurrentPackDownloadSize = bytesOnDisk();
    if (written != slice.take) {
        m_lastProblem = m_fileProblem = filePath + QStringLiteral(": ") + file.errorString();
        qCritical().noquote() << "Unable to write file:" << m_lastProblem;
        return Writing::FileNotWritten;
    }
    return isRangeExceeded() ? Writing::RangeComplete : Writing::Done;
}

void FileDownloader::reportUnusable()
{
    m_lastProblem = body().problem;
    qCritical().noquote() << "Download failed:" << m_lastProblem;
}

bool FileDownloader::isRangeExceeded()
{
    return body().wantedEnd > 0 && m_wanted >= body().wantedEnd && body().position > body().wantedEnd;
}

void FileDownloader::abandonReply()
{
    const QPointer<QNetworkReply> reply = m_reply;
    m_reply = nullptr;
    if (!reply)
        return;
    m_stallTimer->stop();
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}
