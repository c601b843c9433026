#pragma once

#include <QByteArray>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

/// Writes to a file descriptor on its own thread, so that write() never blocks: a companion program may have
/// started this one with a pipe that it never reads. A write that does not fit into the queue is dropped as a
/// whole, and the gap is noted in the stream once there is space again. May be used from any thread.
class BoundedWriter
{
public:
    /// What is written in place of dropped bytes.
    enum class Gap {
        Noted,  ///< a line that says how much is missing
        Silent, ///< nothing: the stream contains only what was passed to write()
    };

    /// Does not own `descriptor`, which must stay open as long as the process lives.
    BoundedWriter(int descriptor, int capacityBytes, Gap gap = Gap::Noted);
    /// Discards what is still queued. If the thread is blocked in a write, it is left running.
    ~BoundedWriter();
    Q_DISABLE_COPY(BoundedWriter)

    void write(const QByteArray &bytes);
    /// Waits until everything is written, for at most `limitMs`. Returns whether everything was.
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
    const Gap m_gap;
    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};
