#pragma once

#include "tests/common/PlatformRemarks.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>
#include <mutex>

/// Records the messages of all threads to the debug stream during its lifetime, instead of printing them.
/// Only one may exist at a time.
class RecordedDebugStream
{
public:
    RecordedDebugStream()
    {
        s_current = this;
        m_previous = qInstallMessageHandler(&RecordedDebugStream::take);
    }
    ~RecordedDebugStream()
    {
        qInstallMessageHandler(m_previous);
        s_current = nullptr;
    }
    RecordedDebugStream(const RecordedDebugStream &) = delete;
    RecordedDebugStream &operator=(const RecordedDebugStream &) = delete;

    /// Returns all messages, in order.
    QStringList lines() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // A deep copy: an implicitly shared one would be read while the next line is added.
        QStringList copy = m_lines;
        copy.detach();
        return copy;
    }
    /// Returns the messages of one level, in order.
    QStringList lines(QtMsgType level) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QStringList found;
        for (int i = 0; i < m_lines.size(); ++i) {
            if (m_levels.at(i) == level)
                found.append(m_lines.at(i));
        }
        return found;
    }
    QStringList warnings() const { return lines(QtWarningMsg); }
    /// Returns how often exactly this line was written.
    int count(const QString &line) const { return static_cast<int>(lines().count(line)); }
    /// Returns how many lines begin with this text.
    int countBeginning(const QString &with) const
    {
        const QStringList all = lines();
        return static_cast<int>(std::count_if(
            all.begin(), all.end(), [&with](const QString &line) { return line.startsWith(with); }));
    }

private:
    static void take(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
    {
        if (isPlatformRemark(message))
            return;
        const std::lock_guard<std::mutex> lock(s_current->m_mutex);
        s_current->m_lines.append(message);
        s_current->m_levels.append(type);
    }

    static inline RecordedDebugStream *s_current = nullptr;
    QtMessageHandler m_previous = nullptr;
    mutable std::mutex m_mutex;
    QStringList m_lines;
    QList<QtMsgType> m_levels;
};
