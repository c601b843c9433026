#pragma once

#include "tests/cli/OtherCopy.h"

#include <csignal>
#include <functional>
#include <ostream>

class CliEndingTest;

/// One way for quillmarsh-cli to end, with the exit code and the last event that it must have.
struct Ending
{
    const char *name;
    /// Describes the ending.
    const char *text;
    const char *model;
    QStringList arguments;
    int exitCode;
    /// Outcome, stage and reason of the last event; empty if there is none.
    const char *lastEvent;
    /// What happened to the device, as returned by CliEndingTest::device().
    const char *device;
    /// Prepares the scenario; may be empty.
    std::function<void(CliEndingTest &)> prepare = {};
    /// Called once the program runs; may be empty.
    std::function<void(CliEndingTest &)> meanwhile = {};
};

inline void PrintTo(const Ending &ending, std::ostream *out)
{
    *out << ending.text;
}

/// Checks exit code, last event and device after each ending. Prints what the program really did as a line
/// "ending: ..."; scripts/cli-endings.sh makes a table of these lines.
class CliEndingTest : public CliTest, public testing::WithParamInterface<Ending>
{
public:
    using CliTest::interrupt;
    using CliTest::waitForMessage;

    CliScenario &s() { return scenario(GetParam().model); }
    void playBurn(const QJsonArray &steps)
    {
        s().program.setScript(CliCases::usbFlasher, CliCases::scriptFor(QStringLiteral("image"), {steps}));
    }
    void waitForStage(const char *stage) { ASSERT_TRUE(s().waitForEvent(CliCases::inStage(stage))); }
    void interruptTwice()
    {
        dependsOnRealTime("the five seconds for the second request");
        interrupt();
        ASSERT_TRUE(waitForMessage("the update goes on"));
        interrupt();
    }
    void remove(const QString &tool)
    {
        ASSERT_TRUE(QFile::remove(s().program.applicationFolder() + QLatin1Char('/') + tool));
    }
    QString besideTheWorkingFolder(const char *name)
    {
        return s().program.workingFolder() + QLatin1String("/../") + QLatin1String(name);
    }
    std::unique_ptr<OtherCopy> other;

protected:
    int reports() { return s().bus.device(s().model()).value(QLatin1String("reports")).toArray().size(); }
    bool wasStarted(const QString &tool, const QString &firstArgument)
    {
        const QList<QStringList> all = argumentsOf(tool);
        return std::any_of(all.begin(), all.end(),
                           [&](const QStringList &arguments) { return arguments.value(0) == firstArgument; });
    }
    QString lastEventText()
    {
        const QJsonObject last = lastEvent();
        if (last.value(QLatin1String("event")) != QLatin1String("result"))
            return last.value(QLatin1String("event")).toString();
        QStringList texts;
        for (const char *field : {"outcome", "stage", "reason"})
            texts.append(last.value(QLatin1String(field)).toString());
        return texts.join(QLatin1String(", "));
    }
    /// Returns what this program has done to the device.
    QString device()
    {
        // A device that was reset comes back a little later.
        if (s().bus.device(s().model()).value(QLatin1String("resets")).toInt() > 0) {
            EXPECT_TRUE(s().bus.waitForDevice(s().model(), CliCases::application));
        }
        const QJsonObject seen = s().bus.device(s().model());
        const bool isInBootloader = seen.value(QLatin1String("state")) == QLatin1String("bootloader");
        const QString place = isInBootloader ? QStringLiteral(", in its bootloader") : QString();
        if (seen.value(QLatin1String("burns")).toInt() > 0)
            return (s().burned() == s().image() ? QStringLiteral("has the new firmware")
                                                : QStringLiteral("has other bytes")) +
                   place;
        const bool wasProgrammed = wasStarted(CliCases::iapProgrammer, QStringLiteral("Start"));
        if (s().program.runs(CliCases::usbFlasher).isEmpty() &&
            s().program.runs(CliCases::hidFlasher).isEmpty() && !wasProgrammed &&
            reports() == m_reportsBefore)
            return QStringLiteral("untouched");
        return QStringLiteral("may need another update") + place;
    }

    /// The reports that another copy sent to the device before.
    int m_reportsBefore = 0;
};

/// Returns the endings of the program under test; each test program has its own list.
const QVector<Ending> &endings();
