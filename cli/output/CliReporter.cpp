#include "cli/output/CliReporter.h"

#include "support/log/LogFile.h"

CliReporter::CliReporter(EventSink &sink, const QString &logFile) : m_sink(sink), m_logFile(logFile) {}

void CliReporter::log(const QString &line)
{
    m_sink.log(line);
    if (m_logFile.isEmpty())
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    LogFile::appendTimestampedLine(m_logFile, line);
}

void CliReporter::setProgress(int percent)
{
    m_sink.progress({percent, std::nullopt, std::nullopt});
}
