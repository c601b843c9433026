#include "cli/output/TextEvents.h"

#include "checks/Texts.h"

#include <gtest/gtest.h>

namespace {

const QByteArray writing = "Writing the device: do not disconnect it";

class TextEventsTest : public testing::Test
{
protected:
    TextEvents &events(int width, bool colour = false)
    {
        m_events = std::make_unique<TextEvents>(TextEvents::Style{width, colour},
                                                [this](const QByteArray &bytes) { m_written += bytes; });
        return *m_events;
    }
    static UpdateProgress percent(int value) { return {value, {}, {}}; }
    static UpdateSummary succeeded()
    {
        UpdateSummary summary;
        summary.result = {UpdateResult::Outcome::Succeeded, UpdateStage::Resetting, UpdateReason::None};
        summary.model = QStringLiteral("DevMaa");
        return summary;
    }
    static UpdateSummary failed()
    {
        UpdateSummary summary;
        summary.result = {UpdateResult::Outcome::Failed, UpdateStage::Idle, UpdateReason::NoDevice};
        summary.exitCode = ExitCode::NoDevice;
        return summary;
    }
    /// Returns what a terminal of `width` columns shows in the end, line by line, without trailing spaces.
    QList<QByteArray> screen() const
    {
        QList<QByteArray> lines{QByteArray()};
        int column = 0;
        for (const char byte : m_written) {
            if (byte == '\r') {
                column = 0;
            } else if (byte == '\n') {
                lines.append(QByteArray());
                column = 0;
            } else {
                if (lines.last().size() <= column)
                    lines.last().append(byte);
                else
                    lines.last()[column] = byte;
                ++column;
            }
        }
        for (QByteArray &line : lines) {
            while (line.endsWith(' '))
                line.chop(1);
        }
        return lines;
    }

    QByteArray m_written;
    std::unique_ptr<TextEvents> m_events;
};

TEST_F(TextEventsTest, WithoutATerminalEachStageAndEachTenPercentIsALine)
{
    TextEvents &sink = events(0);
    sink.stage(UpdateStage::Flashing);
    for (const int value : {0, 3, 9, 10, 16, 19, 48, 48, 100, 100})
        sink.progress(percent(value));
    sink.stage(UpdateStage::Resetting);
    sink.stage(UpdateStage::Idle);
    sink.log(QStringLiteral("not for a person"));
    sink.message(QStringLiteral("A sentence."));
    sink.result(succeeded());
    EXPECT_EQ(m_written, writing + "\n  0 %\n  10 %\n  48 %\n  100 %\nRestarting the device\nA sentence.\n"
                                   "DevMaa was updated.\n");
}

TEST_F(TextEventsTest, WithoutATerminalThereAreNoColours)
{
    events(0, false).result(failed());
    EXPECT_EQ(m_written, "The update failed: no such device is connected.\n");
}

TEST_F(TextEventsTest, OnATerminalOneLineIsRewritten)
{
    TextEvents &sink = events(80);
    sink.stage(UpdateStage::Flashing);
    sink.progress(percent(7));
    sink.progress(percent(100));
    EXPECT_EQ(screen(), QList<QByteArray>{writing + "  100 %"});
    // A shorter text covers the longer one completely.
    sink.stage(UpdateStage::Resetting);
    EXPECT_EQ(screen(), QList<QByteArray>{"Restarting the device"});
}

TEST_F(TextEventsTest, OnATerminalASentenceReplacesTheLineWhichIsShownAgainBelow)
{
    TextEvents &sink = events(80);
    sink.stage(UpdateStage::Flashing);
    sink.message(QStringLiteral("A sentence."));
    EXPECT_EQ(screen(), (QList<QByteArray>{"A sentence.", ""}));
    sink.progress(percent(50));
    sink.result(succeeded());
    EXPECT_EQ(screen(), (QList<QByteArray>{"A sentence.", "DevMaa was updated.", ""}));
}

TEST_F(TextEventsTest, ALineIsAlwaysShorterThanTheTerminalIsWide)
{
    TextEvents &sink = events(20);
    sink.stage(UpdateStage::Flashing);
    sink.progress(percent(50));
    EXPECT_EQ(screen(), QList<QByteArray>{"Writing the device:"});
    Texts::setLanguage(Texts::Language::Chinese);
    m_written.clear();
    TextEvents &chinese = events(10);
    chinese.stage(UpdateStage::Fetching);
    Texts::setLanguage(Texts::Language::English);
    // Each Chinese character takes two columns.
    EXPECT_EQ(m_written, "\r" + QStringLiteral("正在获取").toUtf8());
}

TEST_F(TextEventsTest, TheResultIsGreenOrRed)
{
    events(80, true).result(succeeded());
    EXPECT_EQ(m_written, "\x1b[32mDevMaa was updated.\x1b[0m\n");
    m_written.clear();
    events(80, true).result(failed());
    EXPECT_TRUE(m_written.startsWith("\x1b[31mThe update failed"));
}

} // namespace
