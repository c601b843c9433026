#pragma once

#include <QFile>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>

class QNetworkAccessManager;
class Reporter;

/// Downloads one small file with a single GET request to disk. A file larger than HttpAnswer::manifestLimit,
/// a partial file and a compressed file count as errors.
///
/// Lives on the GUI thread. A caller on another thread clears `succeeded`, emits sigDownloadFile and polls
/// `succeeded`. If it gives up waiting, it calls abandonDownload().
class FileDownloaderHTTP : public QObject
{
    Q_OBJECT

public:
    /// Log lines go to `owner`, which must outlive this object.
    FileDownloaderHTTP(QObject *parent, Reporter *owner);
    ~FileDownloaderHTTP() override;

    /// Aborts the current request without logging and removes the file that it has written. May be called
    /// from any thread; it takes effect on this object's thread, before any request that is made afterwards.
    void abandonDownload();

    /// Set when a request has succeeded; the caller clears it before a request.
    std::atomic<bool> succeeded{false};

signals:
    void sigDownloadFile(QString url, QString savePath);

private slots:
    void onReadyRead();
    void onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);
    void onDownloadFinished();
    void onDownloadFile(QString url, QString savePath);
    void onError(QNetworkReply::NetworkError code);

private:
    void dropRequest();
    void removeFile();
    /// Ends the request with an error that was not detected by Qt.
    void failRequest(const QString &problem);

    QNetworkAccessManager *m_manager;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<QFile> m_file;
    qint64 m_receivedBytes = 0;
    /// Why this class ended the request; empty if it did not.
    QString m_problem;
    Reporter *m_owner;
};
