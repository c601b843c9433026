#include "simulator/server/AnswerServer.h"
#include "simulator/time/RunningTime.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"
#include "tests/update/ManifestServer.h"
#include "tests/update/OnWorkerThread.h"

#include "support/LanguageUtilities.h"
#include "support/process/ShutdownFlag.h"
#include "update/ChosefirmwareWidget.h"

#include <QElapsedTimer>
#include <QLayout>
#include <QMetaMethod>
#include <QPushButton>
#include <QScrollArea>

namespace {

class ChosefirmwareWidgetTest : public testing::Test
{
protected:
    ChosefirmwareWidgetTest()
    {
        // Loads the language tables, which this program lacks, before anything is recorded.
        LanguageUtilities::instance();
        m_rig.setManifest(R"({"CurrentVersion":{
            "b2":{"downloadURL":"http://x/b2"},"a1":{"downloadURL":"http://x/a1"},
            "C3":{"fileURL":"http://x/c3"}}})");
    }
    void TearDown() override { ShutdownFlag::instance().lower(); }

    static QStringList names(const ChosefirmwareWidget &chooser)
    {
        QStringList texts;
        auto *content = chooser.findChild<QScrollArea *>()->widget();
        for (int i = 0; i < content->layout()->count(); ++i)
            texts.append(qobject_cast<QPushButton *>(content->layout()->itemAt(i)->widget())->text());
        return texts;
    }
    static void press(const ChosefirmwareWidget &chooser, const QString &name)
    {
        chooser.findChild<QPushButton *>(QLatin1String("choose ") + name)->click();
    }
    /// Waits for a choice on another thread and calls `answer` once the window is shown.
    template <typename F>
    QString choice(ChosefirmwareWidget &chooser, F answer)
    {
        QTimer whenShown;
        QObject::connect(&whenShown, &QTimer::timeout, &chooser, [&] {
            if (chooser.isVisible()) {
                whenShown.stop();
                answer();
            }
        });
        whenShown.start(5);
        return onWorkerThread([&] { return chooser.waitForChoice(); });
    }

    ManifestServer m_rig;
};

TEST_F(ChosefirmwareWidgetTest, ModelNamesAppearAsButtonsSortedByNameWhateverTheirOrderInTheManifest)
{
    const RecordedDebugStream debug;
    const ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_EQ(names(chooser),
              (QStringList{QStringLiteral("C3"), QStringLiteral("a1"), QStringLiteral("b2")}));
    EXPECT_EQ(debug.lines(), (QStringList{QStringLiteral("设备名称及其下载地址:"),
                                          QStringLiteral("设备名称: C3 -> 下载链接: "),
                                          QStringLiteral("设备名称: a1 -> 下载链接: http://x/a1"),
                                          QStringLiteral("设备名称: b2 -> 下载链接: http://x/b2")}));
}

TEST_F(ChosefirmwareWidgetTest, IsASmallHiddenTopLevelWindow)
{
    const ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_EQ(chooser.windowTitle(), QStringLiteral("选择你的设备"));
    EXPECT_EQ(chooser.minimumSize(), QSize(200, 270));
    EXPECT_EQ(chooser.maximumSize(), QSize(200, 270));
    EXPECT_TRUE(chooser.isWindow());
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_TRUE(chooser.findChild<QScrollArea *>()->widgetResizable());
}

TEST_F(ChosefirmwareWidgetTest, ItsMetaObjectHasOneSignalAndOneSlot)
{
    const QMetaObject &meta = ChosefirmwareWidget::staticMetaObject;
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    const QMetaMethod slot = meta.method(meta.methodOffset() + 1);
    EXPECT_EQ(signal.methodSignature(), "sigSetHide(bool)");
    EXPECT_EQ(signal.methodType(), QMetaMethod::Signal);
    EXPECT_EQ(signal.parameterNames(), QList<QByteArray>{"close"});
    EXPECT_EQ(slot.methodSignature(), "onSetHide(bool)");
    EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
}

TEST_F(ChosefirmwareWidgetTest, TheSignalShowsAndHidesIt)
{
    ChosefirmwareWidget chooser(m_rig.manifestUrl());
    emit chooser.sigSetHide(false);
    EXPECT_TRUE(chooser.isVisible());
    emit chooser.sigSetHide(true);
    EXPECT_FALSE(chooser.isVisible());
}

TEST_F(ChosefirmwareWidgetTest, APickReleasesTheWaitingThreadWithTheName)
{
    ChosefirmwareWidget chooser(m_rig.manifestUrl());
    const RecordedDebugStream debug;
    EXPECT_EQ(choice(chooser, [&] { press(chooser, QStringLiteral("a1")); }), QStringLiteral("a1"));
    EXPECT_EQ(chooser.chosenName(), QStringLiteral("a1"));
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("选中的固件: a1")));
}

TEST_F(ChosefirmwareWidgetTest, ACloseWithoutAPickReleasesTheWaitingThreadWithNothing)
{
    ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_EQ(choice(chooser, [&] { chooser.close(); }), QString());
    EXPECT_FALSE(chooser.isVisible());
}

TEST_F(ChosefirmwareWidgetTest, ShuttingDownReleasesTheWaitingThreadWithNothing)
{
    ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_EQ(choice(chooser, [] { ShutdownFlag::instance().raise(); }), QString());
    EXPECT_EQ(onWorkerThread([&] { return chooser.waitForChoice(); }), QString())
        << "if the program is already shutting down";
}

TEST_F(ChosefirmwareWidgetTest, ARequestThatIsNeverAnsweredIsAbortedByShuttingDown)
{
    m_rig.setFault(QStringLiteral("stall"));
    const RunningTimer running;
    QElapsedTimer timer;
    timer.start();
    QTimer::singleShot(100, [] { ShutdownFlag::instance().raise(); });
    const ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_GE(timer.elapsed(), 90);
    EXPECT_LT(running.elapsed(), 2000);
    EXPECT_TRUE(names(chooser).isEmpty());
}

TEST_F(ChosefirmwareWidgetTest, ANetworkErrorLeavesTheWindowEmpty)
{
    m_rig.setFault(QStringLiteral("404"));
    const RecordedDebugStream debug;
    const ChosefirmwareWidget chooser(m_rig.manifestUrl());
    EXPECT_TRUE(names(chooser).isEmpty());
    ASSERT_EQ(debug.lines().size(), 1);
    EXPECT_TRUE(debug.lines().first().startsWith(QStringLiteral("请求错误: ")));
}

TEST_F(ChosefirmwareWidgetTest, ABodyThatIsNoObjectLeavesTheWindowEmpty)
{
    for (const QByteArray &body : {QByteArray("<html>"), QByteArray("[]"), QByteArray()}) {
        m_rig.setManifest(body);
        const RecordedDebugStream debug;
        const ChosefirmwareWidget chooser(m_rig.manifestUrl());
        EXPECT_TRUE(names(chooser).isEmpty());
        EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("解析 JSON 失败")});
    }
}

TEST_F(ChosefirmwareWidgetTest, AManifestAbove16MebibytesIsNotReadToItsEndAndLeavesTheWindowEmpty)
{
    const QByteArray models = R"({"CurrentVersion":{"a1":{"downloadURL":"http://x/a1"}}})";
    m_rig.setManifest(models + QByteArray(16 * 1024 * 1024 - models.size(), ' '));
    RecordingReporter reporter;
    EXPECT_EQ(names(ChosefirmwareWidget(m_rig.manifestUrl(), nullptr, &reporter)).size(), 1);
    EXPECT_TRUE(reporter.events().isEmpty());

    m_rig.setManifest(models + QByteArray(16 * 1024 * 1024 + 1 - models.size(), ' '));
    const RecordedDebugStream debug;
    EXPECT_TRUE(names(ChosefirmwareWidget(m_rig.manifestUrl(), nullptr, &reporter)).isEmpty());
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("请求错误: the file is larger than 16 MiB")});
    EXPECT_EQ(reporter.logLines(), QStringList{QStringLiteral(
                                       "The list of models cannot be used: the file is larger than 16 MiB")});
}

TEST_F(ChosefirmwareWidgetTest, AnAnswerThatIsNotTheWholeManifestLeavesTheWindowEmpty)
{
    const QByteArray models = R"({"CurrentVersion":{"a1":{"downloadURL":"http://x/a1"}}})";
    const struct
    {
        QByteArray head, problem;
    } cases[] = {
        {"HTTP/1.1 300 Multiple Choices\r\n\r\n", "the server answered with status 300"},
        {"HTTP/1.1 399 Nonsense\r\n\r\n", "the server answered with status 399"},
        {"HTTP/1.1 206 Partial Content\r\n\r\n", "the server sent a part of the file only"},
        {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n", "the server compressed what it sent"},
    };
    for (const auto &each : cases) {
        const AnswerServer server({{each.head + models}});
        const RecordedDebugStream debug;
        const ChosefirmwareWidget chooser(server.url().toString());
        EXPECT_TRUE(names(chooser).isEmpty()) << each.head.constData();
        EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("请求错误: ") + QString::fromUtf8(each.problem)});
    }
}

TEST_F(ChosefirmwareWidgetTest, AManifestIsFetchedOnceWithAGet)
{
    const ChosefirmwareWidget chooser(m_rig.manifestUrl());
    ASSERT_EQ(m_rig.server.requests().size(), 1);
    EXPECT_EQ(m_rig.server.requests().first().method, "GET");
    EXPECT_EQ(m_rig.server.requests().first().path, "/manifest.json");
    EXPECT_EQ(m_rig.server.requests().first().header("Accept-Encoding"), "identity");
}

} // namespace
