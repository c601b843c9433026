#include "harness/session/XvfbSession.h"
#include "tests/common/ProcessGone.h"
#include "tests/harness/RunningSubject.h"

#include <QSet>
#include <QtEndian>

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <thread>

namespace {

/// Returns the width and the height in the header of a PNG file.
QSize sizeOfPicture(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray header = file.read(24);
    return header.size() < 24 ? QSize()
                              : QSize(qFromBigEndian<qint32>(header.constData() + 16),
                                      qFromBigEndian<qint32>(header.constData() + 20));
}

TEST(XvfbSessionTest, FourSessionsStartedAtOnceHaveDifferentDisplays)
{
    struct Started
    {
        bool ok = false;
        QString display;
        QString error;
    };
    // The threads run until all displays are known, because a server ends with the thread that started it.
    std::promise<void> done;
    const std::shared_future<void> untilDone = done.get_future().share();
    std::array<std::promise<Started>, 4> promises;
    std::array<std::thread, 4> threads;
    for (size_t index = 0; index < threads.size(); ++index) {
        threads[index] = std::thread([&promise = promises[index], untilDone] {
            XvfbSession session;
            const bool ok = session.start(QSize(320, 200));
            promise.set_value({ok, session.display(), session.errorText()});
            untilDone.wait();
        });
    }
    QSet<QString> displays;
    for (auto &promise : promises) {
        const Started started = promise.get_future().get();
        EXPECT_TRUE(started.ok) << qPrintable(started.error);
        displays.insert(started.display);
    }
    done.set_value();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(displays.size(), 4);
}

TEST(XvfbSessionTest, TheScreenHasTheSizeAskedForAndShowsTheProgram)
{
    XvfbSession session;
    ASSERT_TRUE(session.start(QSize(1000, 700))) << qPrintable(session.errorText());
    RunningSubject subject;
    subject.stage.setDisplay(session.display());
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    const QString screen = subject.stage.workingFolder() + QStringLiteral("/screen.png");
    ASSERT_TRUE(subject.probe.grabScreen(screen)) << qPrintable(subject.probe.errorText());
    EXPECT_EQ(sizeOfPicture(screen), QSize(1000, 700));
    // The file of a black screen of this size has only a few hundred bytes.
    EXPECT_GT(QFileInfo(screen).size(), 2000);
}

TEST(XvfbSessionTest, ItsServerEndsWithItAndLeavesNoZombie)
{
    qint64 server = 0;
    {
        XvfbSession session;
        ASSERT_TRUE(session.start(QSize(320, 200))) << qPrintable(session.errorText());
        server = session.processId();
        EXPECT_FALSE(processIsReaped(server));
    }
    EXPECT_TRUE(processIsReaped(server));
}

TEST(XvfbSessionTest, AnExistingDisplayIsUsedOnlyOnRequest)
{
    qputenv("DISPLAY", ":4711");
    XvfbSession existing;
    EXPECT_TRUE(existing.useExistingDisplay());
    EXPECT_EQ(existing.display(), QLatin1String(":4711"));
    XvfbSession own;
    ASSERT_TRUE(own.start(QSize(320, 200))) << qPrintable(own.errorText());
    EXPECT_NE(own.display(), QLatin1String(":4711"));
    qunsetenv("DISPLAY");
    XvfbSession none;
    EXPECT_FALSE(none.useExistingDisplay());
}

} // namespace
