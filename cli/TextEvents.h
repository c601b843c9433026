#pragma once

#include "cli/EventSink.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <functional>
#include <mutex>

/// Shows events to a person: on a terminal with one line that is rewritten, elsewhere as plain lines without
/// control characters.
class PersonEvents : public EventSink
{
public:
    struct Look
    {
        /// Characters in a line of the terminal; 0 for none: plain lines.
        int terminalWidth = 0;
        bool colour = false;
    };
    using Write = std::function<void(const QByteArray &bytes)>;

    /// `write` must not block.
    PersonEvents(const Look &look, Write write);

    void device(const DeviceInfo &device) override;
    void stage(UpdateStage stage) override;
    void progress(const UpdateProgress &progress) override;
    void log(const QString &line) override;
    void result(const UpdateSummary &summary) override;
    void finding(const Finding &finding) override;
    void tell(const QString &sentence) override;

private:
    void showLive();
    void print(const QString &line, const char *colour = "");
    void writeLine(const QString &line, const char *colour);

    const Look m_look;
    const Write m_write;
    std::mutex m_mutex;
    UpdateStage m_stage = UpdateStage::Idle;
    std::optional<UpdateProgress> m_progress;
    QElapsedTimer m_inStage;
    int m_shownTenth = -1;
    /// Columns of the live line that is on the screen.
    int m_liveColumns = 0;
};
