#include "support/log/BoundedWriter.h"

#include <cerrno>
#include <chrono>

#include <unistd.h>

namespace {

/// Does without QFile, which converts the text of an error with Qt's codecs: a blocked write may return while
/// the process destroys them.
void writeAll(int descriptor, const QByteArray &bytes)
{
    for (int done = 0; done < bytes.size();) {
        const auto count =
            ::write(descriptor, bytes.constData() + done, static_cast<unsigned>(bytes.size() - done));
        if (count > 0)
            done += static_cast<int>(count);
        else if (count == 0 || errno != EINTR)
            return;
    }
}

} // namespace

BoundedWriter::BoundedWriter(int descriptor, int capacityBytes, Gap gap)
    : m_capacityBytes(capacityBytes),
      m_gap(gap),
      m_shared(std::make_shared<Shared>()),
      m_thread(&BoundedWriter::run, m_shared, descriptor)
{
}

BoundedWriter::~BoundedWriter()
{
    bool stuck = false;
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        m_shared->ended = true;
        stuck = m_shared->writing;
    }
    m_shared->changed.notify_all();
    // The thread shares ownership of the queue, so it may outlive this object.
    if (stuck)
        m_thread.detach();
    else
        m_thread.join();
}

void BoundedWriter::write(const QByteArray &bytes)
{
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        if (m_shared->queuedBytes + bytes.size() > m_capacityBytes) {
            if (m_gap == Gap::Noted)
                m_shared->droppedBytes += bytes.size();
            return;
        }
        m_shared->queue.push_back(bytes);
        m_shared->queuedBytes += bytes.size();
    }
    m_shared->changed.notify_all();
}

bool BoundedWriter::flush(int limitMs)
{
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    return m_shared->changed.wait_for(lock, std::chrono::milliseconds(limitMs),
                                      [this] { return m_shared->queue.empty() && !m_shared->writing; });
}

void BoundedWriter::run(std::shared_ptr<Shared> shared, int descriptor)
{
    std::unique_lock<std::mutex> lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&] { return shared->ended || !shared->queue.empty(); });
        if (shared->ended)
            return;
        QByteArray bytes;
        if (shared->droppedBytes > 0)
            bytes = "... " + QByteArray::number(shared->droppedBytes) + " bytes of diagnostics dropped\n";
        shared->droppedBytes = 0;
        for (const QByteArray &next : shared->queue)
            bytes += next;
        shared->queue.clear();
        shared->queuedBytes = 0;
        shared->writing = true;
        lock.unlock();
        writeAll(descriptor, bytes);
        lock.lock();
        shared->writing = false;
        shared->changed.notify_all();
    }
}
