#pragma once

#include "download/BodyPlace.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QSslSocket>
#include <QUrl>

#include <optional>

class QNetworkAccessManager;
class QTimer;

/// Downloads a file, or one byte range of it, to a local file. It appends data as it arrives, resumes at the
/// length of the local file and retries after errors. The owner polls `state`.
///
/// Lives on the thread that created it and works only while that thread processes events. It never truncates
/// or removes the local file.
class FileDownloader : public QObject
{
    Q_OBJECT

public:
    enum State : int { Failed = -1, Running = 0, Finished = 1, Paused = 2 };

    /// If the system provides no TLS (`hasTls`), the download cannot start, not even over plain HTTP.
    FileDownloader(const QUrl &url, const QString &path, QObject *parent = nullptr,
                   bool hasTls = QSslSocket::supportsSsl());

    /// Starts the request, from where the local file ends. Without TLS it gives up at once; after
    /// dropNetwork() it does nothing.
    void startDownload();
    /// Aborts the request and deletes the network access manager, its thread and the timer: objects that are
    /// kept after their run cost little. Must be called on this object's thread. State and sizes stay as they
    /// are.
    void dropNetwork();

    /// Returns whether all retries are used up or a retry is pointless. `state` then stays Failed.
    bool hasGivenUp() const { return m_hasGivenUp; }
    /// Returns the last problem, for the user, or an empty string.
    QString lastProblem() const { return m_lastProblem; }
    /// Returns the last error of opening or writing the local file, or an empty string.
    QString fileProblem() const { return m_fileProblem; }

    /// The bytes of this download on disk: the resume offset plus the bytes that the current request has
    /// written.
    qint64 CurrentPackDownloadSize = 0;
    /// The first byte and the end (exclusive; 0 for the whole file) of the range in the remote file.
    qint64 startByte = 0;
    qint64 endByte = 0;
    QString filePath;
    /// The size of the whole remote file. Only used by the owner.
    qint64 wholeFileSize = 0;
    int state = Running;
    /// The number of retries during the lifetime of this object; never reset.
    int retryCount = 0;
    int maxRetries = 20;
    /// Milliseconds before a retry.
    int retryDelay = 1000;
    /// A request fails after this many milliseconds without a byte for the file. This covers the time from
    /// its start and all redirects, unlike Qt's own limit, which ends with the first redirect.
    int stallTimeout = 30000;
    /// The total size according to the headers of the reply.
    qint64 m_totalSize = 0;

public slots:
    void onReadyRead();
    void onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);
    void onMetaDataChanged();
    void onFinished(QNetworkReply *reply);
    void retryDownload();
    void onErrorOccurred(QNetworkReply::NetworkError code);
    void pause();
    void resume();

private:
    enum class Writing { Done, RangeComplete, Unusable, FileNotOpened, FileNotWritten };

    void sendRequest(const QNetworkRequest &request);
    void retryOrGiveUp();
    void giveUp();
    void retryReadLater();
    BodyPlace &body();
    Writing writeAvailable();
    void finishWithoutError();
    void finish();
    void failOnStall();
    /// Stores and prints why the current body is not what was requested.
    void reportUnusable();
    /// Returns whether the range is complete and the body continues after it.
    bool isRangeExceeded();
    qint64 bytesOnDisk() const { return m_resumeOffset + m_broughtBytes; }
    /// Disconnects and aborts the current reply.
    void abandonReply();

    QUrl m_url;
    QNetworkAccessManager *m_manager = nullptr;
    QPointer<QNetworkReply> m_reply;
    /// The length of the local file when the current request was sent.
    qint64 m_resumeOffset = 0;
    qint64 m_startFileSize = 0;
    /// The place of the current body; not set before the headers have arrived. Its position is that of the
    /// next byte of the body.
    std::optional<BodyPlace> m_body;
    /// The position in the remote file of the next byte to write to the local file.
    qint64 m_wanted = 0;
    /// The first byte that the current request asks for; not set if it asks for the whole file.
    std::optional<qint64> m_asked;
    /// The bytes of the current body that have been read, and those of them that have been written.
    qint64 m_receivedBytes = 0;
    qint64 m_broughtBytes = 0;
    /// Runs while a request waits for bytes. Null, like m_manager, without TLS and after dropNetwork().
    QTimer *m_stallTimer = nullptr;
    bool m_hasTls;
    bool m_isReadRetryArmed = false;
    bool m_hasGivenUp = false;
    QString m_lastProblem;
    QString m_fileProblem;
};
