#include "tests/endtoend/EndToEnd.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>

namespace {

using namespace EndToEnd;

const QString md5Failed = QStringLiteral("CurrentStatus: MD5 verification failed.");
const QString upgradeSuccessful = QStringLiteral("CurrentStatus: Upgrade Successful");

enum class Ends {
    Burned,     ///< the exact image is on the device
    NotFlashed, ///< the controls are back and the device was left alone
    Waits,      ///< without a limit, and the window can be left
};

struct Row
{
    const char *name;
    const char *fault;
    const char *place;
    /// "M" stands for the manifest (after the chooser's own look at it), "I" for the image.
    const char *spec;
    Ends end;
    /// A line of the log that tells why.
    const char *line;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << row.fault << " at " << row.place;
}

const Row rows[] = {
    {"StallAtManifest", "stall", "manifest", "stall:path=M,nth=2", Ends::NotFlashed,
     "Download failed due to timeout."},
    {"CloseInManifest", "close", "manifest, middle", "close-after:path=M,nth=2,bytes=30", Ends::NotFlashed,
     "Get File Address Failed!"},
    {"StallAtProbe", "stall", "probe", "stall:path=I,whole=1", Ends::NotFlashed,
     "wait server return timeout!"},
    {"ChunkedProbe", "chunked", "probe", "chunked:path=I,whole=1", Ends::NotFlashed,
     "wait server return timeout!"},
    {"StallInSegment", "stall", "segment, middle", "stall-after:path=I,range=5,bytes=50000", Ends::Waits,
     "Begin Download now..."},
    {"MissingSegment", "404", "segment", "404:path=I,range=5", Ends::Waits, "gave up after 20 retries"},
    {"UnsatisfiableSegment", "416", "segment", "416:path=I,range=5", Ends::NotFlashed, "merge Files Failed!"},
    {"ResetInSegment", "reset", "segment, middle", "reset-after:path=I,range=5,bytes=50000", Ends::Burned,
     "merge Files Success"},
    {"ShortSegment", "short-206", "segment, middle", "short-206:path=I,range=5,bytes=50000", Ends::Burned,
     "merge Files Success"},
    {"NoRanges", "ignore-range", "all segments", "ignore-range:path=I", Ends::Burned, "merge Files Success"},
    {"BusySegment", "503 twice", "segment", "503:path=I,range=5,times=2", Ends::Burned,
     "merge Files Success"},
    {"ChunkedSegment", "chunked", "segment", "chunked:path=I,range=5", Ends::Burned, "merge Files Success"},
    {"NoLengthSegment", "no-length", "segment", "no-length:path=I,range=5", Ends::Burned,
     "merge Files Success"},
    {"SlowSegment", "slow-drip", "segment", "slow-drip:path=I,range=5,bytes=4096,ms=20", Ends::Burned,
     "merge Files Success"},
};

/// A server at fault and the real program, which gets every byte right, or fails as it should.
class ServerFaultTest : public EndToEndTest, public testing::WithParamInterface<Row>
{
protected:
    bool waitForLine(const char *text)
    {
        const QDeadlineTimer limit(updateLimitMs);
        while (!m_scenario->program.updateLog().contains(QString::fromLatin1(text))) {
            if (limit.hasExpired())
                return false;
            QThread::msleep(100);
        }
        return true;
    }
    void expectLineThenLeave(const char *line)
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        ASSERT_TRUE(s.pressStart());
        EXPECT_TRUE(waitForLine(line));
        EXPECT_TRUE(s.probe.waitForText(title, QStringLiteral("Downloading"), 10000));
        QThread::msleep(1000); // it is still there a while later, and answers
        EXPECT_TRUE(s.probe.text(title).contains(QStringLiteral("Downloading")));
        EXPECT_FALSE(s.probe.isEnabled(startButton));
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(s.closeWindow().value_or(-1), 0);
        EXPECT_LT(timer.elapsed(), 4000);
    }
    void expectUntouchedDevice()
    {
        UpdateScenario &s = scenario();
        EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    }
};

TEST_P(ServerFaultTest, ExactBytesOrTheRightFailure)
{
    const Row &row = GetParam();
    QString spec = QString::fromLatin1(row.spec);
    spec.replace(QLatin1String("=M"), QLatin1String("=*.json"));
    spec.replace(QLatin1String("=I"), QLatin1String("=*.img"));
    UpdateScenario &s = scenario();
    s.serverFaults = QStringList{spec};
    const char *outcome = "";
    switch (row.end) {
    case Ends::Burned:
        outcome = "exact bytes burned";
        EXPECT_EQ(update(), upgradeSuccessful);
        EXPECT_TRUE(s.burned() == s.image());
        break;
    case Ends::NotFlashed:
        outcome = "nothing flashed, controls back";
        EXPECT_EQ(update(), md5Failed);
        expectUntouchedDevice();
        break;
    case Ends::Waits:
        outcome = "window alive, leaving works";
        expectLineThenLeave(row.line);
        expectUntouchedDevice();
        break;
    }
    EXPECT_TRUE(waitForLine(row.line));
    std::printf("fault: %s | program, %s | %s\n", row.fault, row.place, HasFailure() ? "WRONG" : outcome);
}

std::string nameOfRow(const testing::TestParamInfo<Row> &row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Program, ServerFaultTest, testing::ValuesIn(rows), nameOfRow);

} // namespace
