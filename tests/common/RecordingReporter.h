#pragma once

#include "support/log/Reporter.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>

/// A reporter that records all calls in order. May be used from several threads.
class RecordingReporter : public Reporter
{
public:
    void log(const QString &line) override { add(m_log, line, QStringLiteral("log ") + line); }
    void setStateTitle(const TranslatableText &title) override
    {
        const QString key = QString::fromUtf8(title.key);
        add(m_titles, key, QStringLiteral("title ") + key);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_fallbacks.append(QString::fromUtf8(title.fallback));
    }
    void setProgress(int percent) override
    {
        const QString text = QString::number(percent);
        add(m_progress, text, QStringLiteral("progress ") + text);
    }
    void enableStartButton(bool enable) override
    {
        note(QStringLiteral("button %1").arg(enable));
        if (enable && onControlsBack)
            onControlsBack();
    }
    void runDeviceCheck(bool run) override { note(QStringLiteral("check %1").arg(run)); }

    QStringList logLines() const { return copyOf(m_log); }
    /// Returns the English keys of the titles.
    QStringList titles() const { return copyOf(m_titles); }
    /// Returns their Chinese fallbacks.
    QStringList fallbacks() const { return copyOf(m_fallbacks); }
    QStringList progress() const { return copyOf(m_progress); }
    /// Returns all events in the order of the calls: "log …", "title …", "progress …", "button 0|1", "check
    /// 0|1".
    QStringList events() const { return copyOf(m_events); }

    /// Called when the start button is enabled.
    std::function<void()> onControlsBack;

private:
    /// Returns a deep copy: an implicitly shared one would be read while the next entry is added.
    QStringList copyOf(const QStringList &list) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QStringList copy = list;
        copy.detach();
        return copy;
    }
    void note(const QString &event)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_events.append(event);
    }
    void add(QStringList &list, const QString &text, const QString &event)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        list.append(text);
        m_events.append(event);
    }

    mutable std::mutex m_mutex;
    QStringList m_log;
    QStringList m_titles;
    QStringList m_fallbacks;
    QStringList m_progress;
    QStringList m_events;
};
