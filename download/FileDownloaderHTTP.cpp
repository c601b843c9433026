#include "download/FileDownloaderHTTP.h"

#include "download/DownloadProgress.h"
#include "download/HttpAnswer.h"
#include "support/log/Reporter.h"

#include <QDebug>
#include <QNetworkAccessManager>
#include <QUrl>

FileDownloaderHTTP::FileDownloaderHTTP(QObject *parent, Reporter *owner)
    : QObject(parent),
      m_manager(new QNetworkAccessManager(this)),
      m_owner(owner)
{
    connect(this, &FileDownloaderHTTP::sigDownloadFile, this, &FileDownloaderHTTP::onDownloadFile);
}

FileDownloaderHTTP::~FileDownloaderHTTP()
{
    if (m_reply)
        m_reply->disconnect(this);
}

void FileDownloaderHTTP::abandonDownload()
{
    QMetaObject::invokeMethod(this, &FileDownloaderHTTP::dropRequest, Qt::QueuedConnection);
}

void FileDownloaderHTTP::dropRequest()
{
    const QPointer<QNetworkReply> reply = m_reply;
    m_reply = nullptr;
    if (reply) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    removeFile();
}

void FileDownloaderHTTP::removeFile()
{
    if (!m_file)
        return;
    m_file->close();
    m_file->remove();
    m_file.reset();
}

// The parameters are passed by value, because the signatures of signal and slot are fixed.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void FileDownloaderHTTP::onDownloadFile(QString url, QString savePath)
{
    dropRequest();
    m_owner->log(QStringLiteral("try to download dev json..."));
    const QUrl address(url, QUrl::TolerantMode);
    if (!address.isValid()) {
        qDebug().noquote() << "Invalid URL:" << url;
        m_owner->log(QStringLiteral("Invalid URL"));
        return;
    }
    m_file = std::make_unique<QFile>(savePath);
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug().noquote() << "Could not open file for writing:" << savePath;
        m_owner->log(QStringLiteral("Could not open file for writing"));
        m_owner->log(savePath + QStringLiteral(": ") + m_file->errorString());
        m_file.reset();
        return;
    }
    m_receivedBytes = 0;
    m_problem.clear();
    m_reply = HttpAnswer::get(*m_manager, HttpAnswer::request(address));
    // As large as the file may be: with a smaller buffer, Qt occasionally stops emitting readyRead.
    m_reply->setReadBufferSize(HttpAnswer::manifestLimit + 1);
    connect(m_reply, &QNetworkReply::readyRead, this, &FileDownloaderHTTP::onReadyRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &FileDownloaderHTTP::onDownloadProgress);
    connect(m_reply, &QNetworkReply::finished, this, &FileDownloaderHTTP::onDownloadFinished);
    connect(m_reply, &QNetworkReply::errorOccurred, this, &FileDownloaderHTTP::onError);
}

void FileDownloaderHTTP::onReadyRead()
{
    if (!m_file || !m_reply)
        return;
    const QByteArray data = m_reply->readAll();
    m_receivedBytes += data.size();
    if (m_receivedBytes > HttpAnswer::manifestLimit) {
        failRequest(HttpAnswer::tooLarge());
        return;
    }
    if (m_file->write(data) == data.size() && m_file->flush())
        return;
    m_owner->log(QStringLiteral("Could not write file: ") + m_file->errorString());
    failRequest(m_file->errorString());
}

void FileDownloaderHTTP::failRequest(const QString &problem)
{
    m_problem = problem;
    m_reply->abort(); // ends in onError and onDownloadFinished like any other failure
}

void FileDownloaderHTTP::onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal)
{
    // Qt reports progress once more when a reply was aborted while it delivered data.
    if (!m_reply)
        return;
    if (bytesTotal < 1)
        qDebug() << "Received:" << bytesReceived << "bytes";
    else
        qDebug() << "Progress:" << bytesReceived * 100 / bytesTotal << "%";
    m_owner->log(receivedLine(bytesReceived, bytesTotal));
}

void FileDownloaderHTTP::onDownloadFinished()
{
    if (!m_reply)
        return;
    onReadyRead(); // for the remaining bytes
    if (!m_reply)
        return;
    const QString problem =
        m_problem.isEmpty() ? HttpAnswer::problemOfWhole(*m_reply, m_receivedBytes) : m_problem;
    const bool isClean = problem.isEmpty();
    if (isClean) {
        qDebug() << "Download finished successfully.";
        m_owner->log(QStringLiteral("Download finished successfully."));
    } else {
        qDebug().noquote() << "Download finished with error:" << problem;
        m_owner->log(QStringLiteral("Download finished with error:") + problem);
        removeFile();
    }
    if (m_file) {
        m_file->flush();
        m_file->close();
        m_file.reset();
    }
    m_reply->deleteLater();
    m_reply = nullptr;
    // Set last, because the polling thread reads the file as soon as this is true.
    if (isClean)
        succeeded = true;
}

void FileDownloaderHTTP::onError(QNetworkReply::NetworkError code)
{
    qDebug() << "Download error:" << code;
    removeFile();
}
