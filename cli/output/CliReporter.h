#pragma once

#include "cli/output/EventSink.h"
#include "support/log/Reporter.h"

#include <QString>

#include <mutex>

/// Turns the reports of an update into events. May be called from any thread.
class CliReporter : public Reporter
{
public:
    /// `sink` must outlive the reporter. Log lines are also appended to `logFile` unless it is empty.
    CliReporter(EventSink &sink, const QString &logFile);

    void log(const QString &line) override;
    // Not needed: the sink shows the stage in its own words.
    void setStateTitle(const TranslatableText & /*title*/) override {}
    void setProgress(int percent) override;
    // Not needed: without a window there are no controls and no monitor to switch.
    void enableStartButton(bool /*enable*/) override {}
    void runDeviceCheck(bool /*run*/) override {}

private:
    EventSink &m_sink;
    const QString m_logFile;
    std::mutex m_mutex;
};
