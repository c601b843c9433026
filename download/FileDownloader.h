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

/// Fetches a file, or one byte range of it, into a local file, appending as data arrives. It resumes
/// from the local file's length and tries again after errors. Its owner polls `state`.
///
/// Lives on the thread that made it and works only while that thread processes events. The local
/// file is never truncated or removed here.
class FileDownloader : public QObject
{
    Q_OBJECT

public:
    enum State : int { Failed = -1, Running = 0, Finished = 1, Paused = 2 };

    /// Without TLS, on which the system decides, the download cannot start, whatever its address.
    FileDownloader(const QUrl &url, const QString &path, QObject *parent = nullptr,
                   bool hasTls = QSslSocket::supportsSsl());

    /// Starts the request, or starts it again from where the local file ends. Without TLS it gives up at
    /// once; after dropNetwork() it does nothing.
    void startDownload();
    /// Gives up the request and the network access, with its thread; must be called on this object's
    /// thread. State and sizes stay as they are.
    void dropNetwork();

    /// Whether all retries are used up, or none makes sense: `state` stays Failed for good.
    bool hasGivenUp() const { return m_hasGivenUp; }
    /// What went wrong last, for the user; empty when nothing has.
    QString lastProblem() const { return m_lastProblem; }
    /// Why the local file could not be opened or written last; empty when it never failed.
    QString fileProblem() const { return m_fileProblem; }

    /// Bytes of this download on disk: resume offset and what the current request brought and was written.
    qint64 CurrentPackDownloadSize = 0;
    /// First byte and end (exclusive; 0 for the whole file) of the range in the remote file.
    qint64 startByte = 0;
    qint64 endByte = 0;
    QString filePath;
    /// Size of the whole remote file, for the owner's use.
    qint64 wholeFileSize = 0;
    int state = Running;
    /// Retries made in this object's life; never reset.
    int retryCount = 0;
    int maxRetries = 20;
    /// Milliseconds before a retry.
    int retryDelay = 1000;
    /// Milliseconds without a byte for the file after which a request counts as failed, from its start on and
    /// over all redirects. Qt's own limit ends with the first redirect.
    int stallTimeout = 30000;
    /// Total size that the reply's head told.
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
    /// Says why the current body is not the one that was asked for, and keeps it as the problem.
    void reportUnusable();
    /// Whether the range is complete and the body goes on behind it.
    bool isRangeExceeded();
    qint64 bytesOnDisk() const { return m_resumeOffset + m_broughtBytes; }
    /// Lets go of the current reply without waiting for its end.
    void abandonReply();

    QUrl m_url;
    QNetworkAccessManager *m_manager = nullptr;
    QPointer<QNetworkReply> m_reply;
    /// Length of the local file when the current request was made.
    qint64 m_resumeOffset = 0;
    qint64 m_startFileSize = 0;
    /// Where the current body belongs; nothing before its head has arrived. The position is that of the next
    /// byte that it brings.
    std::optional<BodyPlace> m_body;
    /// Position in the remote file of the next byte that the local file lacks.
    qint64 m_wanted = 0;
    /// First byte that the current request asked for; nothing when it asked for the whole file.
    std::optional<qint64> m_asked;
    /// Bytes of the current body that were read, and those of them that were written.
    qint64 m_receivedBytes = 0;
    qint64 m_broughtBytes = 0;
    /// Runs while a request waits for bytes.
    QTimer *m_stallTimer;
    bool m_hasTls;
    bool m_isReadRetryArmed = false;
    bool m_hasGivenUp = false;
    QString m_lastProblem;
    QString m_fileProblem;
};
