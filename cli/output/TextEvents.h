#pragma once

#include "cli/output/EventSink.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <functional>
#include <mutex>

/// Shows events as text for the user: on a terminal with one line that is rewritten as the update proceeds,
/// elsewhere as plain lines without control characters.
class TextEvents : public EventSink
{
public:
    struct Style
    {
        /// Columns of the terminal; 0 if there is none, for plain lines.
        int terminalWidth = 0;
        bool colour = false;
    };
    using Write = std::function<void(const QByteArray &bytes)>;

    /// `write` must not block.
    TextEvents(const Style &style, Write write);

    void device(const DeviceInfo &device) override;
    void stage(UpdateStage stage) override;
    void progress(const UpdateProgress &progress) override;
    void log(const QString &line) override;
    void result(const UpdateSummary &summary) override;
    void finding(const Finding &finding) override;
    void message(const QString &sentence) override;

private:
    void showLive();
    void print(const QString &line, const char *colour = "");
    void writeLine(const QString &line, const char *colour);

    const Style m_style;
    const Write m_write;
    std::mutex m_mutex;
    UpdateStage m_stage = UpdateStage::Idle;
    std::optional<UpdateProgress> m_progress;
    QElapsedTimer m_sinceStageChange;
    int m_lastTenth = -1;
    /// Columns of the rewritten line that is on the screen.
    int m_liveColumns = 0;
};
