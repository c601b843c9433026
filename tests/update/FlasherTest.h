#pragma once

#include "tests/support/ManualClock.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/ToldTools.h"
#include "update/Flasher.h"
#include "update/FlasherOutput.h"

#include <gtest/gtest.h>

#include <functional>

/// Keeps the levels that it is given.
class RecordingPicture : public ProgressPicture
{
public:
    void setPictureLevel(double percent) override { levels.append(percent); }
    void repaintPicture() override { ++repaints; }

    QList<double> levels;
    int repaints = 0;
};

/// Really waits through the short sleeps in which a child is watched, and only notes the long ones.
class WatchingClock : public ManualClock
{
public:
    bool sleepMs(int milliseconds) override
    {
        if (milliseconds > 10) {
            longSleeps.append(milliseconds);
        } else {
            Clock::real().sleepMs(1);
            if (whileWatching)
                whileWatching();
        }
        return ManualClock::sleepMs(milliseconds);
    }

    QList<int> longSleeps;
    std::function<void()> whileWatching;
};

/// A flasher whose children are told what to do.
class FlasherTest : public testing::Test
{
protected:
    FlasherTest()
    {
        m_paths.usbFlasher = m_tools.program(QStringLiteral("usb"));
        m_paths.hidFlasher = m_tools.program(QStringLiteral("hid"));
        m_state.setImagePath(m_image);
    }

    int runUsb(const QByteArray &body)
    {
        m_tools.write(QStringLiteral("usb"), body);
        return m_flasher.runFlasher(m_paths.usbFlasher, m_image);
    }
    bool burnUsb(bool bootloaderOk)
    {
        bool ok = false;
        m_flasher.burnWithRetry(&ok, bootloaderOk);
        return ok;
    }

    const QString m_image = QStringLiteral("/srv/an image.img");
    ToldTools m_tools;
    UpdatePaths m_paths;
    RecordingReporter m_reporter;
    RecordingPicture m_picture;
    LiveState m_state;
    WatchingClock m_clock;
    Flasher m_flasher{m_reporter, m_picture, m_state, m_clock, m_paths};
};
