#pragma once

#include <QFile>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>

class QNetworkAccessManager;
class Reporter;

/// Fetches one small file in a single GET straight to disk. A file above HttpAnswer::manifestLimit, a part of
/// one, and a compressed one are errors.
///
/// Lives on the GUI thread. A caller on another thread clears `succeeded`, emits sigDownloadFile and
/// polls `succeeded`; when it has waited long enough it calls abandonDownload().
class FileDownloaderHTTP : public QObject
{
    Q_OBJECT

public:
    /// Log lines go to `owner`, which must outlive this object.
    FileDownloaderHTTP(QObject *parent, Reporter *owner);
    ~FileDownloaderHTTP() override;

    /// Lets go of a request that was waited for in vain, without a word: it is aborted and what it
    /// wrote is removed. May be called from any thread; it takes effect on this object's thread,
    /// before any request that is asked for afterwards.
    void abandonDownload();

    /// Set by a clean finish; cleared by the caller before a request.
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
    /// Ends the request as failed for a reason that Qt does not know.
    void failRequest(const QString &problem);

    QNetworkAccessManager *m_manager;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<QFile> m_file;
    qint64 m_receivedBytes = 0;
    /// Why the request was ended by this class; empty when it was not.
    QString m_problem;
    Reporter *m_owner;
};
