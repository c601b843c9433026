#pragma once

#include <QStringList>

/// Collects what is written to the debug stream while it lives. One at a time.
class CapturedDebug
{
public:
    CapturedDebug()
    {
        collected().clear();
        m_previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &line) { collected() << line; });
    }
    ~CapturedDebug() { qInstallMessageHandler(m_previous); }
    CapturedDebug(const CapturedDebug &) = delete;
    CapturedDebug &operator=(const CapturedDebug &) = delete;

    QStringList lines() const { return collected(); }
    int count(const QString &line) const { return static_cast<int>(collected().count(line)); }

private:
    static QStringList &collected()
    {
        static QStringList lines;
        return lines;
    }

    QtMessageHandler m_previous;
};
