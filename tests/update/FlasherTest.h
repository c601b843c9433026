#pragma once

#include "tests/common/ManualClock.h"
#include "tests/common/RecordingReporter.h"
#include "tests/common/ScriptedTools.h"
#include "tests/update/OwnSession.h"
#include "update/Flasher.h"
#include "update/FlasherOutput.h"
#include "update/UpdateChoices.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

/// Records the levels.
class RecordingPicture : public ProgressPicture
{
public:
    void setPictureLevel(double percent) override { levels.append(percent); }
    void repaintPicture() override { ++repaints; }

    QList<double> levels;
    int repaints = 0;
};

/// A clock that really waits during the short sleeps in which a child process is polled, and only records
/// long ones.
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

    bool isShuttingDown() const override
    {
        return ManualClock::isShuttingDown() || (questionsLeft && --*questionsLeft < 0);
    }

    QList<int> longSleeps;
    std::function<void()> whileWatching;
    /// How many more queries report that the program is not shutting down; unlimited if this is not set.
    mutable std::optional<int> questionsLeft;
};

/// A flasher whose children play scripts.
class FlasherTest : public testing::Test
{
protected:
    FlasherTest()
    {
        m_paths.usbFlasher = m_tools.program(QStringLiteral("usb"));
        m_paths.hidFlasher = m_tools.program(QStringLiteral("hid"));
        m_choices.chooseImage({m_image, FirmwareImage::Origin::User, false, {}});
        m_session.begin();
    }

    int runUsb(const ToolSteps &body)
    {
        m_tools.write(QStringLiteral("usb"), body);
        return flasher().runFlasher(m_paths.usbFlasher, m_image);
    }
    Flasher flasher()
    {
        return {m_reporter, m_picture, *m_session, m_clock, m_paths, {m_choices.device().name, m_image}};
    }
    bool burnUsb(bool bootloaderOk)
    {
        bool ok = false;
        flasher().burnWithRetry(&ok, bootloaderOk);
        return ok;
    }

    const QString m_image = QStringLiteral("/srv/an image.img");
    ScriptedTools m_tools;
    UpdatePaths m_paths;
    RecordingReporter m_reporter;
    RecordingPicture m_picture;
    UpdateChoices m_choices;
    OwnSession m_session;
    WatchingClock m_clock;
};
