#include "report/LastRun.h"

#include "session/EventNames.h"
#include "session/UpdateSession.h"

#include <QDateTime>
#include <QJsonObject>

#include <algorithm>

using Outcome = UpdateResult::Outcome;

namespace {

/// A log line that shows that a stage begins.
struct Beginning
{
    const char *line;
    UpdateStage stage;
};

constexpr Beginning beginnings[] = {
    {"Run LocalFile Update Model!", UpdateStage::Fetching},
    {"Find BootloaderMode.!, Show ChosefirmwareWidget.", UpdateStage::AskingForModel},
    {"try to bootloader...", UpdateStage::EnteringBootloader},
    {"in usb write mode..", UpdateStage::Flashing},
    {"in hid write mode..", UpdateStage::Flashing},
    {"run usb reset.", UpdateStage::Resetting},
    {"run hid reset.", UpdateStage::Resetting},
    {"IAP Dev - Run IAPUpDate Mode!", UpdateStage::AskingProgrammer},
    {"disable IAPbtnStart_", UpdateStage::Programming},
};

/// A log line that shows the outcome.
struct Ending
{
    const char *line;
    Outcome outcome;
};

constexpr Ending endings[] = {
    {"Burn Image Success", Outcome::Succeeded},
    {"Burn Image Failed", Outcome::Failed},
    {"ensurePath Failed!", Outcome::Failed},
    {"get file md5 failed.!", Outcome::Failed},
    {"File MD5 mismatch.", Outcome::Failed},
    {"The program was closed before the update had ended.", Outcome::Cancelled},
    {"The program was closed before the IAP programmer had ended.", Outcome::Cancelled},
};

constexpr int timeLength = 19;

/// Splits "[yyyy-MM-dd HH:mm:ss] text". Returns nothing for a line without a time, such as the second line of
/// a text.
std::optional<std::pair<QDateTime, QString>> splitLine(const QString &line)
{
    if (!line.startsWith(QLatin1Char('[')) || line.mid(timeLength + 1, 2) != QLatin1String("] "))
        return std::nullopt;
    const QDateTime time =
        QDateTime::fromString(line.mid(1, timeLength), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!time.isValid())
        return std::nullopt;
    return std::make_pair(time, line.mid(timeLength + 3));
}

/// Reads the lines of a log in order and keeps what they show of the last update.
class Reader
{
public:
    void read(const QDateTime &time, const QString &text)
    {
        if (text.startsWith(QLatin1String("usb tmpPath: ")))
            enter(time, UpdateStage::Fetching);
        for (const Beginning &beginning : beginnings) {
            if (text == QLatin1String(beginning.line))
                enter(time, beginning.stage);
        }
        const auto ending = std::find_if(std::begin(endings), std::end(endings), [&](const Ending &each) {
            return text == QLatin1String(each.line);
        });
        if (run && ending != std::end(endings))
            run->outcome = ending->outcome;
        // A stage ends with the last line that can belong to it.
        const bool isAfterwards = run && run->outcome && run->stage != UpdateStage::Resetting;
        if (run && (ending != std::end(endings) || !isAfterwards) && !m_isOver)
            m_last = time;
        if (run && run->stage == UpdateStage::Resetting && text == QLatin1String("RunCmdReset Done."))
            m_isOver = true;
    }

    void finish()
    {
        if (run && m_last.isValid())
            run->seconds[run->stage] += static_cast<double>(std::max<qint64>(0, m_began.secsTo(m_last)));
    }

    std::optional<LastRun> run;

private:
    void enter(const QDateTime &time, UpdateStage stage)
    {
        const bool isFirst = stage == UpdateStage::Fetching;
        if (!isFirst && !run)
            return;
        if (isFirst) {
            run = LastRun();
            m_isOver = false;
        } else {
            m_last = time;
            finish();
        }
        run->stage = stage;
        m_began = time;
        m_last = time;
    }

    QDateTime m_began;
    QDateTime m_last;
    bool m_isOver = false;
};

} // namespace

std::optional<LastRun> LastRun::of(const UpdateSession &session)
{
    const QMap<UpdateStage, double> times = session.lastSeconds();
    if (times.isEmpty())
        return std::nullopt;
    const UpdateResult result = session.lastResult();
    LastRun run;
    run.isKnown = true;
    run.outcome = result.outcome;
    run.stage = result.stage;
    run.reason = result.reason;
    run.seconds = times;
    return run;
}

std::optional<LastRun> LastRun::fromLog(const QStringList &lines)
{
    Reader reader;
    for (const QString &line : lines) {
        if (const auto parts = splitLine(line))
            reader.read(parts->first, parts->second);
    }
    reader.finish();
    return reader.run;
}

QJsonValue LastRun::toJson() const
{
    QJsonObject times;
    for (auto each = seconds.cbegin(); each != seconds.cend(); ++each)
        times.insert(EventNames::of(each.key()), each.value());
    return QJsonObject{
        {QStringLiteral("source"), isKnown ? QStringLiteral("program") : QStringLiteral("log")},
        {QStringLiteral("outcome"), outcome ? QJsonValue(EventNames::of(*outcome)) : QJsonValue()},
        {QStringLiteral("stage"), EventNames::of(stage)},
        {QStringLiteral("reason"), reason ? QJsonValue(EventNames::of(*reason)) : QJsonValue()},
        {QStringLiteral("seconds"), times}};
}
