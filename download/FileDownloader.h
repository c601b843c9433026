#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;

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

    FileDownloader(const QUrl &url, const QString &path, QObject *parent = nullptr);

    /// Starts the request, or starts it again from where the local file ends. Without network access
    /// (no SSL support, or dropped) it does nothing.
    void startDownload();
    /// Gives up the request and the network access, with its thread; must be called on this object's
    /// thread. State and sizes stay as they are.
    void dropNetwork();

    /// Whether all retries are used up: `state` stays Failed for good.
    bool hasGivenUp() const { return m_hasGivenUp; }
    /// What went wrong last, for the user; empty when nothing has.
    QString lastProblem() const { return m_lastProblem; }
    /// Why the local file could not be opened or written last; empty when it never failed.
    QString fileProblem() const { return m_fileProblem; }

    /// Bytes of this download on disk: resume offset and what the current request brought.
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
    /// Milliseconds without a byte after which a request counts as failed. The toolkit can lose the
    /// news of a connection that was reset, and the request would then never end.
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
    enum class Writing { Done, FileNotOpened, FileNotWritten };

    void retryOrGiveUp();
    void retryReadLater();
    void locateBody();
    Writing writeAvailable();
    void finishWithoutError();
    /// Lets go of the current reply without waiting for its end.
    void abandonReply();

    QUrl m_url;
    QNetworkAccessManager *m_manager = nullptr;
    QPointer<QNetworkReply> m_reply;
    /// Length of the local file when the current request was made.
    qint64 m_resumeOffset = 0;
    qint64 m_startFileSize = 0;
    /// Position in the remote file of the next byte that the body brings, and of the next byte that
    /// the local file lacks.
    qint64 m_bodyPosition = 0;
    qint64 m_wanted = 0;
    /// Bytes that the body brings before the first wanted one.
    qint64 m_bodyLead = 0;
    /// Bytes of the current body that were read, and those of them that were written.
    qint64 m_receivedBytes = 0;
    qint64 m_broughtBytes = 0;
    bool m_isBodyLocated = false;
    bool m_isReadRetryArmed = false;
    bool m_hasGivenUp = false;
    QString m_lastProblem;
    QString m_fileProblem;
};
