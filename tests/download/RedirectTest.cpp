#include "download/FileDownloader.h"
#include "download/FileSizeFetcher.h"
#include "tests/download/DownloadTest.h"

#include <QNetworkReply>
#include <QSemaphore>
#include <QThread>

#include <atomic>

namespace {

/// Holds the network thread back when it has received a redirect, until Qt has requested the target. On a
/// busy machine the system may do the same.
class HeldNetworkThread : public QObject
{
public:
    HeldNetworkThread() { instance = this; }
    ~HeldNetworkThread() override { instance = nullptr; }
    Q_DISABLE_COPY(HeldNetworkThread)

    /// Lets the network thread go on after Qt has handled the redirect of this reply.
    void releaseAfterRedirectOf(QNetworkReply &reply)
    {
        connect(&reply, &QNetworkReply::redirected, this, [this] {
            const auto release = [this] {
                m_redirectIsHandled.release();
            };
            QMetaObject::invokeMethod(this, release, Qt::QueuedConnection);
        });
    }
    bool hasHeld() const { return m_hasHeld; }

    /// As if this class had a slot, which is called on the network thread.
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id == 0 && call == QMetaObject::InvokeMetaMethod)
            m_hasHeld = m_redirectIsHandled.tryAcquire(1, eventLimitMs);
        return id - 1;
    }

private:
    /// Called before each event of each thread. Connects to Qt's private receiver of an answer, which moves
    /// to the network thread when it has been created.
    static bool watchEvent(void **data)
    {
        const HeldNetworkThread *const held = instance;
        if (held == nullptr)
            return false;
        auto *receiver = static_cast<QObject *>(data[0]);
        const auto *event = static_cast<QEvent *>(data[1]);
        if (event->type() == QEvent::ThreadChange && receiver->inherits("QHttpThreadDelegate"))
            QMetaObject::connect(receiver, receiver->metaObject()->indexOfSignal("redirected(QUrl,int,int)"),
                                 held, QObject::staticMetaObject.methodCount(), Qt::DirectConnection);
        return false;
    }

    static std::atomic<HeldNetworkThread *> instance;
    /// Watches from the start of the process, because Qt reads its callbacks without a lock on every thread.
    static const bool isWatching;
    QSemaphore m_redirectIsHandled;
    std::atomic<bool> m_hasHeld{false};
};

std::atomic<HeldNetworkThread *> HeldNetworkThread::instance{nullptr};
const bool HeldNetworkThread::isWatching =
    QInternal::registerCallback(QInternal::EventNotifyCallback, &HeldNetworkThread::watchEvent);

class RedirectTest : public DownloadTest
{
protected:
    RedirectTest()
    {
        serve(QStringLiteral("/other.bin"), m_content);
        fault("redirect:path=/image.bin,to=/other.bin");
    }

    const QByteArray m_content = someBytes(5000);
    QUrl m_url = serve(QStringLiteral("/image.bin"), QByteArray());
    HeldNetworkThread m_thread;
};

TEST_F(RedirectTest, ASlowNetworkThreadDoesNotRepeatTheProbe)
{
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    m_thread.releaseAfterRedirectOf(*probe.findChild<QNetworkReply *>());
    ASSERT_TRUE(processEventsUntil([&] { return probe.fileSize != 0; }));
    EXPECT_TRUE(m_thread.hasHeld());
    EXPECT_EQ(probe.fileSize, m_content.size());
    EXPECT_EQ(pathsAsked(), (QList<QByteArray>{"/image.bin", "/other.bin"}));
}

TEST_F(RedirectTest, ASlowNetworkThreadDoesNotRepeatTheRequestForASegment)
{
    FileDownloader segment(m_url, local("part"));
    segment.endByte = m_content.size();
    segment.stallTimeout = 24 * 60 * 60 * 1000;
    segment.startDownload();
    m_thread.releaseAfterRedirectOf(*segment.findChild<QNetworkReply *>());
    ASSERT_TRUE(processEventsUntil([&] { return segment.state == FileDownloader::Finished; }));
    EXPECT_TRUE(m_thread.hasHeld());
    EXPECT_TRUE(read(local("part")) == m_content);
    EXPECT_EQ(pathsAsked(), (QList<QByteArray>{"/image.bin", "/other.bin"}));
}

} // namespace
