#include "support/process/AfterToolWait.h"

#include "support/process/ShutdownFlag.h"
#include "support/process/ToolRun.h"
#include "tests/common/EventWait.h"
#include "tests/common/ScriptedTools.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

class AfterToolWaitTest : public testing::Test
{
protected:
    void TearDown() override { ShutdownFlag::instance().lower(); }

    /// Waits for a tool that ends after `meanwhile` has been called.
    void waitForTool(const std::function<void()> &meanwhile)
    {
        m_tools.write(QStringLiteral("tool"), m_tools.pause());
        m_tools.holdBack();
        QTimer::singleShot(0, &m_context, [&] {
            EXPECT_TRUE(isWaitingForTool());
            meanwhile();
            m_tools.letGoOn();
        });
        EXPECT_EQ(runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, eventLimitMs).end,
                  ToolRun::Finished);
    }
    void waitForQuickTool()
    {
        m_tools.write(QStringLiteral("quick"), {});
        runToolToEnd(m_tools.program(QStringLiteral("quick")), {}, eventLimitMs);
    }

    ScriptedTools m_tools;
    QObject m_context;
    int m_runs = 0;
    AfterToolWait m_request{[this] {
        EXPECT_FALSE(isWaitingForTool());
        ++m_runs;
    }};
};

TEST_F(AfterToolWaitTest, WithoutAWaitTheCallerActsAtOnce)
{
    EXPECT_FALSE(m_request.postpone());
    QCoreApplication::processEvents();
    m_request.runNow();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(AfterToolWaitTest, ItRunsOnceFromTheEventLoopAfterTheWait)
{
    waitForTool([this] {
        EXPECT_TRUE(m_request.postpone());
        EXPECT_TRUE(m_request.postpone());
    });
    EXPECT_EQ(m_runs, 0) << "the caller has not used the tool's answer yet";
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 1);
    EXPECT_FALSE(m_request.postpone());
}

TEST_F(AfterToolWaitTest, ItDoesNotRunAtTheEndOfANestedWait)
{
    waitForTool([this] {
        m_request.postpone();
        waitForQuickTool();
        QCoreApplication::processEvents();
        EXPECT_EQ(m_runs, 0);
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 1);
}

TEST_F(AfterToolWaitTest, AnotherWaitThatFollowsAtOncePostponesItFurther)
{
    waitForTool([this] { m_request.postpone(); });
    waitForQuickTool();
    EXPECT_EQ(m_runs, 0);
    EXPECT_TRUE(processEventsUntil([this] { return m_runs == 1; }));
}

TEST_F(AfterToolWaitTest, SeveralRequestsRunInTheirOrder)
{
    QStringList order;
    AfterToolWait first([&] { order.append(QStringLiteral("first")); });
    AfterToolWait second([&] { order.append(QStringLiteral("second")); });
    waitForTool([&] {
        second.postpone();
        first.postpone();
        second.postpone();
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(order, (QStringList{QStringLiteral("second"), QStringLiteral("first")}));
}

TEST_F(AfterToolWaitTest, ItDoesNotRunAgainAfterRunNow)
{
    waitForTool([this] { m_request.postpone(); });
    m_request.runNow();
    EXPECT_EQ(m_runs, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 1);
}

TEST_F(AfterToolWaitTest, ItDoesNotRunOnceItIsDestroyed)
{
    auto request = std::make_unique<AfterToolWait>([this] { ++m_runs; });
    waitForTool([&] {
        request->postpone();
        request.reset();
    });
    auto late = std::make_unique<AfterToolWait>([this] { ++m_runs; });
    waitForTool([&] { late->postpone(); });
    late.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 0);
}

TEST_F(AfterToolWaitTest, ShuttingDownDropsIt)
{
    waitForTool([this] { m_request.postpone(); });
    ShutdownFlag::instance().raise();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_runs, 0);
}

} // namespace
