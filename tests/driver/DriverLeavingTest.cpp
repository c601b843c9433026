#include "driver/DriverSequence.h"
#include "support/ShutdownFlag.h"
#include "tests/driver/FakeDriverSystem.h"

#include <gtest/gtest.h>

namespace {

class DriverLeavingTest : public testing::Test
{
protected:
    ~DriverLeavingTest() override { ShutdownFlag::instance().lower(); }

    /// What happens when the window is closed in the middle of the event of this index.
    static QStringList eventsWhenLeftAt(int index)
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
    static QStringList allEvents() { return eventsWhenLeftAt(-1); }
    /// Whether it is more than a message.
    static bool isStep(const QString &event)
    {
        return !event.startsWith(QLatin1String("shown ")) && !event.startsWith(QLatin1String("logged "));
    }
};

TEST_F(DriverLeavingTest, NoFurtherStepBeginsOnceTheWindowWasClosed)
{
    const QStringList all = allEvents();
    ASSERT_GT(all.size(), 30);
    for (int left = 0; left < all.size(); ++left) {
        // The window is closed while a step takes its time.
        if (!isStep(all.at(left)))
            continue;
        const QStringList events = eventsWhenLeftAt(left);
        EXPECT_EQ(events.mid(0, left + 1), all.mid(0, left + 1));
        for (const QString &later : events.mid(left + 1))
            EXPECT_FALSE(isStep(later)) << later.toStdString() << " after " << all.at(left).toStdString();
    }
}

TEST_F(DriverLeavingTest, TheResultOfTheLastStepIsStillLogged)
{
    const QString copied = QStringLiteral("copy C:/App/amd64/libusb0.dll > C:/Windows/System32/libusb0.dll");
    const int copy = allEvents().indexOf(copied);
    EXPECT_EQ(eventsWhenLeftAt(copy).mid(copy),
              (QStringList{copied, QStringLiteral("logged Copy Success 1")}));
}

} // namespace
