#include "tests/download/ThreadFileDownloaderTest.h"

#include <QLabel>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

TEST_F(ThreadFileDownloaderTest, AFileIsFetchedInTenRangesAndJoinedByteForByte)
{
    const QByteArray content = serve(distinctBytes(100003));
    ASSERT_TRUE(fetch());
    EXPECT_EQ(image(), content);
    QSet<QByteArray> ranges;
    for (const QByteArray &range : rangesAsked())
        ranges.insert(range);
    QSet<QByteArray> expected{QByteArray(), "bytes=90000-100002"};
    for (int i = 0; i < 9; ++i)
        expected.insert("bytes=" + QByteArray::number(i * 10000) + '-' +
                        QByteArray::number(i * 10000 + 9999));
    EXPECT_EQ(ranges, expected);
    EXPECT_EQ(m_server.requests().size(), 11);
    EXPECT_EQ(filesLeft(), QStringList{QStringLiteral("dev.img")});
}

TEST_F(ThreadFileDownloaderTest, ASizeThatDividesEvenlyIsFetchedByteForByte)
{
    const QByteArray content = serve(distinctBytes(100000));
    ASSERT_TRUE(fetch());
    EXPECT_EQ(image(), content);
}

TEST_F(ThreadFileDownloaderTest, EachStepIsReportedInOrder)
{
    serve(distinctBytes(3 * 1048576));
    const RecordedDebugStream debug;
    ASSERT_TRUE(fetch());
    EXPECT_EQ(m_log.events(), (QStringList{QStringLiteral("log Begin To Downloader Json: ") + m_worker.url,
                                           QStringLiteral("log Wait Servier Return File Size..."),
                                           QStringLiteral("log AllDownloadFileSize: 3145728"),
                                           QStringLiteral("log Begin Download now..."),
                                           QStringLiteral("log Now merge Files..."),
                                           QStringLiteral("log merge Files Success")}));
    QStringList states = m_states;
    states.removeDuplicates();
    states = states.filter(QRegularExpression(QStringLiteral("^(?!.*: 正在下载 [012] /)")));
    EXPECT_EQ(states,
              (QStringList{
                  QStringLiteral("当前状态: 准备下载任务..."), QStringLiteral("当前状态: 等待服务器返回..."),
                  QStringLiteral("当前状态: 准备下载..."), QStringLiteral("当前状态: 正在下载 3 / 3 MB/S"),
                  QStringLiteral("当前状态: 下载完成 - 稍后"), QStringLiteral("当前状态: 合并文件..."),
                  QStringLiteral("当前状态: 完成下载")}));
    EXPECT_EQ(m_progress.last(), 100);
    int last = -1;
    for (const char *line : {"准备下载任务...", "等待服务器返回...", "Wait Servier Return File Size...",
                             "AllDownloadFileSize: 3145728", "开始: 0", "结束: 314572", "开始: 2831156",
                             "结束: 3145728", "百分之: 100", "file.size(): 0", "开始合并文件", "合并完成"}) {
        const int at = debug.lines().indexOf(QString::fromUtf8(line), last + 1);
        EXPECT_GT(at, last) << line;
        last = at;
    }
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("第 0 轮")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("第 9 轮")));
}

TEST_F(ThreadFileDownloaderTest, TheLabelShowsTheStatusLines)
{
    serve(distinctBytes(1000));
    QLabel label;
    ThreadFileDownloader worker(nullptr, &label, m_clock);
    worker.url = url().toString();
    worker.savePath = local("dev.img");
    ASSERT_TRUE(worker.downloadInSegments(10, &m_log));
    EXPECT_EQ(label.text(), QStringLiteral("当前状态: 完成下载"));
    EXPECT_EQ(worker.parent(), nullptr);
}

TEST_F(ThreadFileDownloaderTest, WithoutAUrlNothingIsAskedFor)
{
    m_worker.url.clear();
    const RecordedDebugStream debug;
    EXPECT_FALSE(fetch());
    EXPECT_EQ(m_log.logLines(), (QStringList{QStringLiteral("Begin To Downloader Json: "),
                                             QStringLiteral("ERR: Json url is null")}));
    EXPECT_EQ(m_states.last(), QStringLiteral("当前状态: 错误1"));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("url is null")));
}

TEST_F(ThreadFileDownloaderTest, AFileOfFewerBytesThanSegmentsIsFetchedWholeTenTimes)
{
    const QByteArray content = serve("12345");
    ASSERT_TRUE(fetch());
    EXPECT_EQ(image(), content.repeated(10));
    QList<QByteArray> expected = QVector<QByteArray>(10).toList();
    expected.append("bytes=0-4");
    QList<QByteArray> ranges = rangesAsked();
    std::sort(ranges.begin(), ranges.end());
    EXPECT_EQ(ranges, expected);
}

TEST_F(ThreadFileDownloaderTest, ASecondRunsProgressCountsTheFirstRunsBytesToo)
{
    const QByteArray content = serve(distinctBytes(50000));
    ASSERT_TRUE(fetch());
    EXPECT_EQ(m_progress.last(), 100);
    m_progress.clear();
    ASSERT_TRUE(fetch());
    EXPECT_EQ(m_worker.segments.size(), 20);
    EXPECT_EQ(m_progress.last(), 200);
    EXPECT_GE(*std::min_element(m_progress.begin(), m_progress.end()), 100);
    EXPECT_EQ(image(), content);
}

TEST_F(ThreadFileDownloaderTest, AnotherRunsPartFilesAreRemovedTooEachTime)
{
    serve(distinctBytes(50000));
    ASSERT_TRUE(fetch());
    const QString other = part(3);
    m_worker.savePath = local("dev.bin");
    write(other, "left behind");
    ASSERT_TRUE(fetch());
    EXPECT_FALSE(QFile::exists(other));
}

TEST_F(ThreadFileDownloaderTest, NoSegmentKeepsItsNetworkAfterARun)
{
    serve(distinctBytes(50000));
    int during = 0;
    m_clock.onSleep = [&] {
        during = std::max(during, networksLeft());
    };
    ASSERT_TRUE(fetch());
    ASSERT_TRUE(fetch());
    EXPECT_EQ(during, 10);
    EXPECT_EQ(networksLeft(), 0);
    EXPECT_TRUE(waitUntil([&] { return m_server.openConnections() == 0; }));
}

TEST_F(ThreadFileDownloaderTest, PartFilesThatAreCompleteFinishWithoutARequest)
{
    const QByteArray content = serve(distinctBytes(100000));
    for (int i = 0; i < 10; ++i)
        write(part(i), content.mid(i * 10000, 10000));
    ASSERT_TRUE(fetch());
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{QByteArray()});
    EXPECT_EQ(image(), content);
    EXPECT_EQ(m_progress.last(), 100);
}

TEST_F(ThreadFileDownloaderTest, PartFilesThatAreIncompleteAreResumedFromTheirLength)
{
    const QByteArray content = serve(distinctBytes(100000));
    write(part(4), content.mid(40000, 1234));
    ASSERT_TRUE(fetch());
    EXPECT_TRUE(rangesAsked().contains("bytes=41234-49999"));
    EXPECT_EQ(image(), content);
}

TEST_F(ThreadFileDownloaderTest, ASegmentAnsweredWith416CountsAsFinishedAndTheMergeFails)
{
    serve(distinctBytes(100000));
    setFault("416:range=4");
    EXPECT_FALSE(fetch());
    EXPECT_TRUE(m_log.logLines().contains(QStringLiteral("merge Files Failed!")));
    EXPECT_EQ(m_states.last(), QStringLiteral("当前状态: 合并文件失败"));
    EXPECT_TRUE(filesLeft().filter(QStringLiteral("packet_")).isEmpty());
}

TEST_F(ThreadFileDownloaderTest, ATargetThatCannotBeOpenedFailsTheMergeAndThePartsAreRemoved)
{
    serve(distinctBytes(100000));
    ASSERT_TRUE(QDir().mkpath(m_worker.savePath));
    const RecordedDebugStream debug;
    EXPECT_FALSE(fetch());
    EXPECT_TRUE(m_log.logLines().contains(QStringLiteral("merge Files Failed!")));
    EXPECT_TRUE(m_log.logLines().last().startsWith(m_worker.savePath))
        << m_log.logLines().last().toStdString();
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("合并失败")));
    EXPECT_TRUE(filesLeft().isEmpty());
    EXPECT_EQ(networksLeft(), 0);
}

TEST_F(ThreadFileDownloaderTest, AFileThatCannotBeStoredIsReportedOnceAndFetchedWhenItCanBe)
{
    const QByteArray content = serve(distinctBytes(100000));
    const QString folder = m_folder.filePath(QStringLiteral("later"));
    m_worker.savePath = folder + QStringLiteral("/dev.img");
    int rounds = 0;
    m_clock.onSleep = [&] {
        for (FileDownloader *segment : qAsConst(m_worker.segments))
            segment->retryDelay = 5;
        if (++rounds == 50)
            QDir().mkpath(folder);
    };
    ASSERT_TRUE(fetch());
    const QStringList told = m_log.logLines().filter(QStringLiteral("The download cannot be stored"));
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().contains(m_worker.savePath + QStringLiteral("packet_")));
    EXPECT_EQ(image(), content);
}

TEST_F(ThreadFileDownloaderTest, ADiskWithoutRoomForPartsAndFileFailsTheRunBeforeTheyAreFetched)
{
    serve(distinctBytes(1000));
    setFault("header:whole=1,name=Content-Length,value=4000000000000000");
    EXPECT_FALSE(fetch());
    EXPECT_TRUE(m_log.logLines().last().startsWith(QLatin1String("The disk is too full for the download: ")));
    EXPECT_TRUE(m_log.logLines().last().contains(QStringLiteral(" needs 8000000000000000 bytes, ")));
    EXPECT_TRUE(m_worker.segments.isEmpty());
    EXPECT_EQ(m_server.requests().size(), 1);
}

} // namespace
