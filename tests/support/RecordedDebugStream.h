#pragma once

#include <QMutex>
#include <QString>
#include <QStringList>
#include <QtGlobal>

/// Keeps what the debug stream gets while it lives, instead of printing it. One at a time.
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
    QStringList lines() const { return m_lines; }
    /// What came as a warning.
    QStringList warnings() const { return m_warnings; }

private:
    static void take(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
    {
        const QMutexLocker lock(&s_current->m_mutex);
        s_current->m_lines.append(message);
        if (type == QtWarningMsg)
            s_current->m_warnings.append(message);
    }

    static inline RecordedDebugStream *s_current = nullptr;
    QtMessageHandler m_previous = nullptr;
    QMutex m_mutex;
    QStringList m_lines;
    QStringList m_warnings;
};
