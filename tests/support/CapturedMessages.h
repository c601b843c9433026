#pragma once

#include <QByteArray>
#include <QDebug>
#include <QMutex>
#include <QString>
#include <QStringList>

/// Keeps what is written to the debug stream, by any thread, while it lives. One at a time.
class CapturedMessages
{
public:
    CapturedMessages()
    {
        s_current = this;
        m_previous = qInstallMessageHandler(&CapturedMessages::take);
    }
    ~CapturedMessages()
    {
        qInstallMessageHandler(m_previous);
        s_current = nullptr;
    }
    Q_DISABLE_COPY_MOVE(CapturedMessages)

    /// The texts in order.
    QStringList texts() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_texts;
    }
    /// The texts of one level, in order.
    QStringList texts(QtMsgType level) const
    {
        const QMutexLocker lock(&m_mutex);
        QStringList found;
        for (int i = 0; i < m_texts.size(); ++i) {
            if (m_levels.at(i) == level)
                found.append(m_texts.at(i));
        }
        return found;
    }
    /// How many texts begin like this.
    int count(const QString &beginning) const
    {
        const QStringList all = texts();
        int found = 0;
        for (const QString &text : all)
            found += text.startsWith(beginning);
        return found;
    }

private:
    static void take(QtMsgType level, const QMessageLogContext &, const QString &text)
    {
        const QMutexLocker lock(&s_current->m_mutex);
        s_current->m_texts.append(text);
        s_current->m_levels.append(level);
    }

    inline static CapturedMessages *s_current = nullptr;
    QtMessageHandler m_previous = nullptr;
    mutable QMutex m_mutex;
    QStringList m_texts;
    QList<QtMsgType> m_levels;
};
