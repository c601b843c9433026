#pragma once

#include "tests/support/PlatformRemarks.h"

#include <QList>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>

/// Keeps what the debug stream gets while it lives, from whichever thread, instead of printing it.
/// One at a time.
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

    /// Everything, in order.
    QStringList lines() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_lines;
    }
    /// What came at one level, in order.
    QStringList lines(QtMsgType level) const
    {
        const QMutexLocker lock(&m_mutex);
        QStringList found;
        for (int i = 0; i < m_lines.size(); ++i) {
            if (m_levels.at(i) == level)
                found.append(m_lines.at(i));
        }
        return found;
    }
    QStringList warnings() const { return lines(QtWarningMsg); }
    /// How often exactly this line came.
    int count(const QString &line) const { return static_cast<int>(lines().count(line)); }
    /// How many lines begin like this.
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
        const QMutexLocker lock(&s_current->m_mutex);
        s_current->m_lines.append(message);
        s_current->m_levels.append(type);
    }

    static inline RecordedDebugStream *s_current = nullptr;
    QtMessageHandler m_previous = nullptr;
    mutable QMutex m_mutex;
    QStringList m_lines;
    QList<QtMsgType> m_levels;
};
