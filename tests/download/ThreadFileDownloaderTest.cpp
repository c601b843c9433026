#include "simulator/time/RunningTime.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/download/SegmentedTest.h"

#include <QDir>
#include <QNetworkReply>
#include <QRegularExpression>

#include <algorithm>
#include <mutex>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

class ThreadFileDownloaderTest : public SegmentedTest
{
protected:
    QStringList statesWithoutProgress() const
    {
        QStringList states;
        for (const QString &state : m_states) {
            if (!state.startsWith(text("当前状态: 正在下载 ")))
                states.append(state);
        }
        return states;
    }
};

TEST_F(ThreadFileDownloaderTest, TheTwoSignalsAreDeclaredInOrderAndThereAreNoOthers)
{
    EXPECT_EQ(entriesOf(ThreadFileDownloader::staticMetaObject),
              (std::vector<std::string>{"signal setProgressBarValue(int)", "signal setStateLabel(QString)"}));
}

TEST_F(ThreadFileDownloaderTest, ARunShowsAndLogsItsStepsInOrder)
{
    RecordedDebugStream messages;
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), m_content);
    EXPECT_TRUE(arePartsGone());
    EXPECT_EQ(statesWithoutProgress(),
              (QStringList{text("当前状态: 准备下载任务..."), text("当前状态: 等待服务器返回..."),
                           text("当前状态: 准备下载..."), text("当前状态: 下载完成 - 稍后"),
                           text("当前状态: 合并文件..."), text("当前状态: 完成下载")}));
    EXPECT_EQ(m_label.text(), text("当前状态: 完成下载"));
    EXPECT_EQ(m_reporter.logLines(),
              (QStringList{text("Begin To Downloader Json: ") + m_worker.url,
                           text("Wait Servier Return File Size..."), text("AllDownloadFileSize: 100007"),
                           text("Begin Download now..."), text("Now merge Files..."),
                           text("merge Files Success")}));
    EXPECT_TRUE(m_reporter.titles().isEmpty());
    QStringList steps;
    const QStringList debug = messages.lines();
    for (const QString &line : debug) {
        for (const char *beginning :
             {"准备下载任务...", "等待服务器返回...", "Wait Servier Return File Size...",
              "AllDownloadFileSize: 100007", "第 9 轮", "百分之: 100", "file.size(): 0", "开始合并文件",
              "合并完成"}) {
            if (line.startsWith(text(beginning)))
                steps.append(text(beginning));
        }
    }
    EXPECT_EQ(steps, (QStringList{text("准备下载任务..."), text("等待服务器返回..."),
                                  text("Wait Servier Return File Size..."),
                                  text("AllDownloadFileSize: 100007"), text("第 9 轮"), text("百分之: 100"),
                                  text("file.size(): 0"), text("开始合并文件"), text("合并完成")}));
}

TEST_F(ThreadFileDownloaderTest, TheRangesAreWrittenToTheDebugStream)
{
    RecordedDebugStream messages;
    ASSERT_TRUE(run());
    EXPECT_EQ(messages.countBeginning(text("第 ")), 10);
    EXPECT_EQ(messages.countBeginning(text("开始: ")), 10);
    EXPECT_EQ(messages.countBeginning(text("结束: ")), 10);
    const QStringList texts = messages.lines();
    EXPECT_TRUE(texts.contains(text("开始: 30000")));
    EXPECT_TRUE(texts.contains(text("结束: 40000")));
    // The last line counts back from the end, including the remainder.
    EXPECT_TRUE(texts.contains(text("开始: 90007")));
    EXPECT_TRUE(texts.contains(text("结束: 100007")));
}

TEST_F(ThreadFileDownloaderTest, EachSegmentAsksForItsRangeOnce)
{
    ASSERT_TRUE(run());
    QList<QByteArray> ranges = rangesAsked();
    ASSERT_EQ(ranges.size(), 11);
    EXPECT_EQ(ranges.takeFirst(), QByteArray()) << "the probe requests the whole file";
    std::sort(ranges.begin(), ranges.end());
    EXPECT_EQ(ranges.first(), "bytes=0-9999");
    EXPECT_EQ(ranges.last(), "bytes=90000-100006");
    for (const ServerRequest &request : server().requests())
        EXPECT_EQ(request.header("Accept-Encoding"), "identity");
}

TEST_F(ThreadFileDownloaderTest, ProgressShowsPercentAndWholeMebibytes)
{
    serveImage(someBytes(12 * 1048576));
    fault("slow-drip:nth=2,bytes=65536,ms=5");
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), m_content);
    ASSERT_FALSE(m_percents.isEmpty());
    EXPECT_EQ(m_percents.last(), 100);
    for (int i = 1; i < m_percents.size(); ++i)
        EXPECT_LE(m_percents.at(i - 1), m_percents.at(i));
    const QStringList lines = m_states.filter(text("正在下载"));
    EXPECT_EQ(lines.last(), text("当前状态: 正在下载 12 / 12 MB/S"));
    const QRegularExpression pattern(text("^当前状态: 正在下载 [0-9]+ / 12 MB/S$"));
    EXPECT_EQ(lines.filter(pattern).size(), lines.size());
    EXPECT_EQ(lines.size(), m_percents.size());
}

TEST_F(ThreadFileDownloaderTest, WithoutAnAddressNothingIsRequested)
{
    RecordedDebugStream messages;
    m_worker.url.clear();
    EXPECT_FALSE(run());
    EXPECT_EQ(m_states, (QStringList{text("当前状态: 准备下载任务..."), text("当前状态: 错误1")}));
    EXPECT_EQ(m_reporter.logLines(),
              (QStringList{text("Begin To Downloader Json: "), text("ERR: Json url is null")}));
    EXPECT_EQ(messages.countBeginning(text("准备下载任务...")), 1);
    EXPECT_EQ(messages.countBeginning(text("url is null")), 1);
    EXPECT_TRUE(server().requests().isEmpty());
}

TEST_F(ThreadFileDownloaderTest, TheSizeIsWaitedFor20SecondsInRoundsOf100Milliseconds)
{
    RecordedDebugStream messages;
    fault("stall");
    m_clock.sleepsCount = true;
    m_clock.onlySleepsCount = true;
    EXPECT_FALSE(run());
    EXPECT_EQ(m_reporter.logLines().last(), text("wait server return timeout!"));
    EXPECT_EQ(messages.lines(QtWarningMsg), QStringList{text("Timeout reached!")});
    EXPECT_EQ(m_clock.sleeps.load(), 200);
    EXPECT_TRUE(m_worker.segments.isEmpty());
}

TEST_F(ThreadFileDownloaderTest, AProbeThatTimedOutIsNotAborted)
{
    fault("stall");
    m_clock.sleepsCount = true;
    begin();
    ASSERT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
    pumpFor(50);
    EXPECT_EQ(server().openConnections(), 1);
}

TEST_F(ThreadFileDownloaderTest, ASizeOfZeroCountsAsNotYetKnown)
{
    serveImage(QByteArray());
    m_clock.sleepsCount = true;
    EXPECT_FALSE(run());
    EXPECT_EQ(m_reporter.logLines().last(), text("wait server return timeout!"));
}

TEST_F(ThreadFileDownloaderTest, ANegativeSizeCountsAsNotYetKnown)
{
    fault("no-length");
    fault("header:name=Content-Range,value=bytes 0-9/-5");
    m_clock.sleepsCount = true;
    EXPECT_FALSE(run());
    EXPECT_EQ(m_reporter.logLines().last(), text("wait server return timeout!"));
}

TEST_F(ThreadFileDownloaderTest, AFileSmallerThanTheCountIsFetchedWholeNineTimesAndOnceAsARange)
{
    serveImage("1234567");
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), QByteArray("1234567").repeated(10));
    const QList<QByteArray> ranges = rangesAsked();
    EXPECT_EQ(ranges.count(QByteArray()), 10) << "the probe and nine segments without a range";
    EXPECT_EQ(ranges.count("bytes=0-6"), 1);
}

TEST_F(ThreadFileDownloaderTest, PartsThatAreCompleteFinishWithoutARequest)
{
    for (int i = 0; i < 10; ++i)
        write(part(i), m_content.mid(i * 10000, i == 9 ? 10007 : 10000));
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), m_content);
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{QByteArray()});
}

TEST_F(ThreadFileDownloaderTest, AnIncompletePartIsResumedFromItsLength)
{
    write(part(3), m_content.mid(30000, 4321));
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), m_content);
    EXPECT_TRUE(rangesAsked().contains("bytes=34321-39999"));
}

TEST_F(ThreadFileDownloaderTest, ASecondRunsProgressGoesAbove100Percent)
{
    ASSERT_TRUE(run());
    m_percents.clear();
    m_states.clear();
    ASSERT_TRUE(run());
    EXPECT_EQ(result(), m_content);
    EXPECT_EQ(m_worker.segments.size(), 20) << "the list is not cleared between runs";
    EXPECT_EQ(m_percents.last(), 200);
    EXPECT_GE(m_percents.first(), 100);
}

TEST_F(ThreadFileDownloaderTest, ASecondRunRemovesTheFirstRunsPartsAgain)
{
    ASSERT_TRUE(run());
    const QString firstPart = part(4);
    write(firstPart, "somebody's");
    m_worker.savePath = local("other.img");
    ASSERT_TRUE(run());
    EXPECT_FALSE(QFile::exists(firstPart));
    EXPECT_EQ(result(), m_content);
}

TEST_F(ThreadFileDownloaderTest, AnExistingTargetIsReportedWithItsSizeAndReplaced)
{
    RecordedDebugStream messages;
    write(m_worker.savePath, QByteArray(123, 'x'));
    ASSERT_TRUE(run());
    EXPECT_EQ(messages.countBeginning(text("file.size(): 123")), 1);
    EXPECT_EQ(result(), m_content);
}

TEST_F(ThreadFileDownloaderTest, AFailedMergeIsReportedAndThePartsAreRemoved)
{
    RecordedDebugStream messages;
    // The target is a folder, but the parts beside it can be written.
    ASSERT_TRUE(QDir().mkdir(m_worker.savePath));
    EXPECT_FALSE(run());
    EXPECT_TRUE(arePartsGone());
    EXPECT_EQ(m_states.last(), text("当前状态: 合并文件失败"));
    const QStringList log = m_reporter.logLines();
    ASSERT_GE(log.size(), 2);
    EXPECT_EQ(log.at(log.size() - 2), text("merge Files Failed!"));
    EXPECT_TRUE(log.last().startsWith(m_worker.savePath)) << "the reason is reported, too";
    EXPECT_EQ(messages.countBeginning(text("合并失败")), 1);
}

TEST_F(ThreadFileDownloaderTest, ASegmentThatGaveUpKeepsTheRunWaitingAndIsReportedOnce)
{
    RecordedDebugStream messages;
    fault("404:range=3");
    int roundsAfter = 0;
    m_clock.onSleep = [&] {
        hurry();
        if (m_worker.segments.size() == 10 && m_worker.segments.at(3)->hasGivenUp() && ++roundsAfter == 50)
            m_clock.shutDown();
    };
    EXPECT_FALSE(run());
    EXPECT_EQ(roundsAfter, 50);
    EXPECT_EQ(m_reporter.logLines().filter(text("gave up")).size(), 1);
    EXPECT_EQ(messages.countBeginning(text("Maximum retry attempts reached. Download failed.")), 1);
    EXPECT_TRUE(m_states.last().startsWith(text("当前状态: 正在下载 "))) << "the last download line stays";
}

TEST_F(ThreadFileDownloaderTest, ACountBelowOneNeverEndsByItself)
{
    for (const int count : {0, -1}) {
        QuickClock clock;
        RecordingReporter reporter;
        ThreadFileDownloader worker(clock);
        worker.url = m_worker.url;
        worker.savePath = m_worker.savePath;
        int rounds = 0;
        clock.onSleep = [&] {
            if (reporter.logLines().contains(text("Begin Download now...")) && ++rounds == 100)
                clock.shutDown();
            EXPECT_TRUE(worker.segments.isEmpty());
        };
        EXPECT_FALSE(worker.downloadInSegments(count, &reporter));
        EXPECT_EQ(rounds, 100) << count << " segments: it waited until the program shut down";
        EXPECT_EQ(reporter.logLines().last(), text("Begin Download now..."));
        EXPECT_FALSE(QFile::exists(m_worker.savePath));
    }
}

TEST_F(ThreadFileDownloaderTest, ShuttingDownEndsTheWaitForTheSizeAtOnce)
{
    fault("stall");
    begin();
    ASSERT_TRUE(processEventsUntil([&] { return server().requests().size() == 1; }));
    const RunningTimer timer;
    m_clock.shutDown();
    ASSERT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_FALSE(m_result);
    EXPECT_TRUE(processEventsUntil([&] { return server().openConnections() == 0; }))
        << "its request is dropped";
    EXPECT_FALSE(m_reporter.logLines().contains(text("wait server return timeout!")));
}

TEST_F(ThreadFileDownloaderTest, ShuttingDownEndsTheDownloadAtOnce)
{
    fault("stall-after:bytes=100,nth=2");
    begin();
    ASSERT_TRUE(processEventsUntil([&] { return server().requests().size() == 11; }));
    const RunningTimer timer;
    m_clock.shutDown();
    ASSERT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_FALSE(m_result);
    EXPECT_TRUE(processEventsUntil([&] { return server().openConnections() == 0; }))
        << "its requests are dropped";
    EXPECT_FALSE(QFile::exists(m_worker.savePath));
}

TEST_F(ThreadFileDownloaderTest, ShuttingDownEndsARunWhoseProbeIsRefusedAtOnce)
{
    fault("refuse");
    begin();
    ASSERT_TRUE(processEventsUntil([&] { return m_clock.sleeps > 3; }));
    const RunningTimer timer;
    m_clock.shutDown();
    ASSERT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_FALSE(m_result);
}

TEST_F(ThreadFileDownloaderTest, AllSegmentsRunAtOnce)
{
    fault("stall-after:bytes=0,nth=2");
    begin();
    EXPECT_TRUE(processEventsUntil([&] { return server().requests().size() == 11; }));
    m_clock.shutDown();
    EXPECT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
}

TEST_F(ThreadFileDownloaderTest, TheSegmentsGetTheirRangeAndTheWholeSize)
{
    ASSERT_TRUE(run(4));
    ASSERT_EQ(m_worker.segments.size(), 4);
    EXPECT_EQ(m_worker.segments.at(1)->startByte, 25001);
    EXPECT_EQ(m_worker.segments.at(1)->endByte, 50002);
    EXPECT_EQ(m_worker.segments.at(3)->endByte, 100007);
    for (const FileDownloader *segment : qAsConst(m_worker.segments)) {
        EXPECT_EQ(segment->wholeFileSize, 100007);
        EXPECT_EQ(segment->parent(), nullptr);
    }
    EXPECT_EQ(m_worker.segments.at(2)->filePath, m_worker.savePath + text("packet_2"));
}

TEST_F(ThreadFileDownloaderTest, TheParentArgumentIsOnlyStored)
{
    QObject parent;
    ThreadFileDownloader worker(&parent, &m_label);
    EXPECT_EQ(worker.stallTimeout, 30000);
    EXPECT_EQ(worker.parent(), nullptr);
    EXPECT_EQ(worker.parentArg, &parent);
    EXPECT_EQ(worker.stateLabel, &m_label);
    emit worker.setStateLabel(text("shown"));
    EXPECT_EQ(m_label.text(), text("shown"));
}

TEST_F(ThreadFileDownloaderTest, ReadBuffersAreBoundedInEverySegment)
{
    fault("stall-after:bytes=0,nth=2");
    QList<qint64> sizes;
    std::mutex mutex;
    m_clock.onSleep = [&] {
        const std::lock_guard<std::mutex> lock(mutex);
        if (m_worker.segments.size() == 10 && sizes.isEmpty()) {
            for (const FileDownloader *segment : qAsConst(m_worker.segments))
                sizes.append(segment->findChild<QNetworkReply *>()->readBufferSize());
            m_clock.shutDown();
        }
    };
    EXPECT_FALSE(run());
    EXPECT_EQ(sizes.count(1024 * 1024), 10);
}

} // namespace
