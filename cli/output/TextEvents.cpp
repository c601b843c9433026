#include "cli/output/TextEvents.h"

#include "cli/output/DeviceStates.h"
#include "cli/output/UpdateTexts.h"

namespace {

const char *const green = "\x1b[32m";
const char *const red = "\x1b[31m";
const char *const plain = "\x1b[0m";

/// Returns the columns that the text takes on a terminal. Chinese characters take two.
int columnsOf(const QString &text)
{
    int columns = 0;
    for (const QChar character : text)
        columns += character.unicode() >= 0x1100 ? 2 : 1;
    return columns;
}

QString cutTo(QString text, int columns)
{
    while (columnsOf(text) > columns)
        text.chop(1);
    return text;
}

} // namespace

TextEvents::TextEvents(const Style &style, Write write) : m_style(style), m_write(std::move(write)) {}

void TextEvents::device(const DeviceInfo &device)
{
    print(DeviceStates::describe(device));
}

void TextEvents::stage(UpdateStage stage)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stage = stage;
        m_progress.reset();
        m_lastTenth = -1;
        m_sinceStageChange.start();
    }
    if (m_style.terminalWidth > 0)
        showLive();
    else if (!UpdateTexts::stageName(stage).isEmpty())
        print(UpdateTexts::stageName(stage));
}

void TextEvents::progress(const UpdateProgress &progress)
{
    int tenth = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_progress = progress;
        tenth = progress.percent / 10;
        if (m_style.terminalWidth == 0 && tenth == m_lastTenth)
            return;
        m_lastTenth = tenth;
    }
    if (m_style.terminalWidth > 0)
        showLive();
    else
        print(QStringLiteral("  %1 %").arg(progress.percent));
}

void TextEvents::showLive()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QString text = cutTo(
        UpdateTexts::progressLine(m_stage, m_progress, m_sinceStageChange.elapsed(), m_style.terminalWidth),
        m_style.terminalWidth - 1);
    const int columns = columnsOf(text);
    const QString erased(qMax(0, m_liveColumns - columns), QLatin1Char(' '));
    m_write('\r' + (text + erased).toUtf8());
    m_liveColumns = columns;
}

void TextEvents::log(const QString & /*line*/)
{
    // Not shown, the log is too long for that: --log writes it to a file.
}

void TextEvents::result(const UpdateSummary &summary)
{
    const bool succeeded = summary.result.outcome == UpdateResult::Outcome::Succeeded;
    print(UpdateTexts::ending(summary), succeeded ? green : red);
}

void TextEvents::finding(const Finding &finding)
{
    switch (finding.verdict) {
    case Finding::Verdict::Ok:
        print(Findings::describe(finding), green);
        break;
    case Finding::Verdict::Warning:
        print(Findings::describe(finding));
        break;
    case Finding::Verdict::Problem:
        print(Findings::describe(finding), red);
        break;
    }
}

void TextEvents::message(const QString &sentence)
{
    print(sentence);
}

void TextEvents::print(const QString &line, const char *colour)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    writeLine(line, colour);
}

void TextEvents::writeLine(const QString &line, const char *colour)
{
    QByteArray bytes;
    if (m_liveColumns > 0)
        bytes = '\r' + QByteArray(m_liveColumns, ' ') + '\r';
    m_liveColumns = 0;
    const bool coloured = m_style.colour && *colour != '\0';
    bytes += coloured ? colour + line.toUtf8() + plain : line.toUtf8();
    m_write(bytes + '\n');
}
