#include "cli/PersonEvents.h"

#include "cli/DeviceStates.h"
#include "cli/LiveLine.h"

namespace {

const char *const green = "\x1b[32m";
const char *const red = "\x1b[31m";
const char *const plain = "\x1b[0m";

/// Chinese characters take two columns of a terminal.
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

PersonEvents::PersonEvents(const Look &look, Write write) : m_look(look), m_write(std::move(write)) {}

void PersonEvents::device(const DeviceInfo &device)
{
    print(DeviceStates::describe(device));
}

void PersonEvents::stage(UpdateStage stage)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stage = stage;
        m_progress.reset();
        m_shownTenth = -1;
        m_inStage.start();
    }
    if (m_look.terminalWidth > 0)
        showLive();
    else if (!LiveLine::nameOf(stage).isEmpty())
        print(LiveLine::nameOf(stage));
}

void PersonEvents::progress(const UpdateProgress &progress)
{
    int tenth = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_progress = progress;
        tenth = progress.percent / 10;
        if (m_look.terminalWidth == 0 && tenth == m_shownTenth)
            return;
        m_shownTenth = tenth;
    }
    if (m_look.terminalWidth > 0)
        showLive();
    else
        print(QStringLiteral("  %1 %").arg(progress.percent));
}

void PersonEvents::showLive()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QString text = cutTo(LiveLine::text(m_stage, m_progress, m_inStage.elapsed(), m_look.terminalWidth),
                               m_look.terminalWidth - 1);
    const int columns = columnsOf(text);
    const QString erased(qMax(0, m_liveColumns - columns), QLatin1Char(' '));
    m_write('\r' + (text + erased).toUtf8());
    m_liveColumns = columns;
}

void PersonEvents::log(const QString & /*line*/)
{
    // Too much for a person; --log keeps it.
}

void PersonEvents::result(const UpdateSummary &summary)
{
    const bool succeeded = summary.result.outcome == UpdateResult::Outcome::Succeeded;
    print(LiveLine::ending(summary), succeeded ? green : red);
}

void PersonEvents::finding(const Finding &finding)
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

void PersonEvents::tell(const QString &sentence)
{
    print(sentence);
}

void PersonEvents::print(const QString &line, const char *colour)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    writeLine(line, colour);
}

void PersonEvents::writeLine(const QString &line, const char *colour)
{
    QByteArray bytes;
    if (m_liveColumns > 0)
        bytes = '\r' + QByteArray(m_liveColumns, ' ') + '\r';
    m_liveColumns = 0;
    const bool coloured = m_look.colour && *colour != '\0';
    bytes += coloured ? colour + line.toUtf8() + plain : line.toUtf8();
    m_write(bytes + '\n');
}
