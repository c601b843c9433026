#pragma once

#include <QElapsedTimer>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QTimer;

/// Learns the size of a remote file from the head of an ordinary GET. The body goes on arriving and
/// is dropped, until it ends or the owner deletes the probe: slowly, once the size is known, to leave the
/// line to others. A server that gives up on so slow a reader is asked again, like any other. A failed
/// request is repeated at once, up to 999 times.
///
/// Lives on the thread that made it and works only while that thread processes events.
class FileSizeFetcher : public QObject
{
    Q_OBJECT

public:
    explicit FileSizeFetcher(const QUrl &url, QObject *parent = nullptr);

    void fetchFileSize();

    /// In bytes; 0 until it is known.
    qint64 fileSize = 0;
    int maxRetries = 999;
    int retryCount = 0;
    /// How fast the body is read once the size is known.
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
    /// Since the current reply told the size, and bytes of its body that were read since then.
    QElapsedTimer m_sinceSize;
    qint64 m_droppedBytes = 0;
    QTimer *m_dropTimer;
};
