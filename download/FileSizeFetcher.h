#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;

/// Learns the size of a remote file from the head of an ordinary GET. The body goes on arriving and
/// is dropped, until it ends or the owner deletes the probe. A failed request is repeated at once,
/// up to 999 times.
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

private slots:
    void onMetaDataChanged();
    void onFinished(QNetworkReply *reply);

private:
    QUrl m_url;
    QNetworkAccessManager *m_manager;
    QPointer<QNetworkReply> m_reply;
};
