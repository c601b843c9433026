#pragma once

#include <QElapsedTimer>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QTimer;

/// Determines the size of a remote file from the headers of a GET request. The body is read and discarded
/// until it ends or the owner deletes this object. Once the size is known it is read slowly, to leave the
/// bandwidth to the parts. A failed request is repeated at once, up to 999 times, even if it failed because
/// the server gave up on the slow reader.
///
/// Lives on the thread that created it and works only while that thread processes events.
class FileSizeFetcher : public QObject
{
    Q_OBJECT

public:
    explicit FileSizeFetcher(const QUrl &url, QObject *parent = nullptr);

    void fetchFileSize();

    /// The size in bytes; 0 until it is known.
    qint64 fileSize = 0;
    int maxRetries = 999;
    int retryCount = 0;
    /// The speed at which the body is read once the size is known.
    int bodyBytesPerSecond = 16 * 1024;

private slots:
    void onMetaDataChanged();
    void onFinished(QNetworkReply *reply);

private:
    void dropBody();

    QUrl m_url;
    QNetworkAccessManager *m_manager;
    QPointer<QNetworkReply> m_reply;
    bool m_isSizeKnown = false;
    /// The time since the current reply's headers contained the size, and the bytes of its body read since
    /// then.
    QElapsedTimer m_sinceSize;
    qint64 m_droppedBytes = 0;
    QTimer *m_dropTimer;
};
