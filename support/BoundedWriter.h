#pragma once

#include <QByteArray>
#include <QFile>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

/// Writes to a file descriptor on a thread of its own, so that whoever calls write() never blocks:
/// a companion program may have given us a pipe that it never reads. What does not fit into the
/// queue is dropped, and the gap is said in the stream once there is room again.
///
/// All operations may be called from any thread.
class BoundedWriter
{
public:
    /// Does not own `descriptor`, which must stay open as long as the process lives.
    BoundedWriter(int descriptor, int capacityBytes);
    /// Gives up what cannot be written at once. A thread that is stuck in the pipe is left behind.
    ~BoundedWriter();
    Q_DISABLE_COPY(BoundedWriter)

    void write(const QByteArray &bytes);
    /// Waits until all is written, at most `limitMs`; returns whether it is.
    bool flush(int limitMs);

private:
    struct Shared
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<QByteArray> queue;
        int queuedBytes = 0;
        qint64 droppedBytes = 0;
        bool writing = false;
        bool ended = false;
    };

    static void run(std::shared_ptr<Shared> shared, int descriptor);

    const int m_capacityBytes;
    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};
