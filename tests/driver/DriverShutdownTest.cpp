#include "driver/DriverSequence.h"
#include "support/process/ShutdownFlag.h"
#include "tests/driver/FakeDriverSystem.h"

#include <gtest/gtest.h>

namespace {

class DriverShutdownTest : public testing::Test
{
protected:
    ~DriverShutdownTest() override { ShutdownFlag::instance().lower(); }

    /// Returns the events if the window is closed during the event with this index.
    static QStringList eventsIfClosedDuring(int index)
    {
        ShutdownFlag::instance().lower();
        FakeDriverSystem system;
        for (const char *name : {"libusb0.dll", "libusbK.dll", "WdfCoInstaller01009.dll", "libusbK.sys"})
            system.files.insert(QStringLiteral("C:/App/amd64/") + QLatin1String(name));
        system.whenHappened = [&system, index] {
            if (system.events.size() == index + 1)
                ShutdownFlag::instance().raise();
        };
        runDriverSequence(QStringLiteral("C:/App"), system, system);
        return system.events;
    }
    static QStringList allEvents() { return eventsIfClosedDuring(-1); }
    /// Returns whether the event is a step and not only a message.
    static bool isStep(const QString &event)
    {
        return !event.startsWith(QLatin1String("shown ")) && !event.startsWith(QLatin1String("logged "));
    }
};

TEST_F(DriverShutdownTest, NoFurtherStepBeginsOnceTheWindowWasClosed)
{
    const QStringList all = allEvents();
    ASSERT_GT(all.size(), 30);
    for (int left = 0; left < all.size(); ++left) {
        // The window can only be closed during a step.
        if (!isStep(all.at(left)))
            continue;
        const QStringList events = eventsIfClosedDuring(left);
        EXPECT_EQ(events.mid(0, left + 1), all.mid(0, left + 1));
        for (const QString &later : events.mid(left + 1))
            EXPECT_FALSE(isStep(later)) << later.toStdString() << " after " << all.at(left).toStdString();
    }
}

TEST_F(DriverShutdownTest, TheResultOfTheLastStepIsStillLogged)
{
    const QString copied = QStringLiteral("copy C:/App/amd64/libusb0.dll > C:/Windows/System32/libusb0.dll");
    const int copy = allEvents().indexOf(copied);
    EXPECT_EQ(eventsIfClosedDuring(copy).mid(copy),
              (QStringList{copied, QStringLiteral("logged Copy Success 1")}));
}

} // namespace
