#pragma once

#include "support/Clock.h"
#include "support/Reporter.h"
#include "update/LiveState.h"
#include "update/ProgressPicture.h"
#include "update/UpdatePaths.h"

#include <QString>

/// Runs the SoC vendor's command-line flashers and turns their output into progress. Lives and
/// runs on the update's thread; every wait ends when the program leaves, and then the child is killed.
class Flasher
{
public:
    /// All arguments outlive the flasher.
    Flasher(Reporter &reporter, ProgressPicture &picture, LiveState &state, Clock &clock,
            const UpdatePaths &paths);

    /// One run of `program` on an image; returns a BurnResult. There is no time limit.
    int runFlasher(const QString &program, const QString &imagePath);

    /// Up to ten runs of the USB flasher while it cannot reach the device. Sets *ok to true on
    /// success and leaves it unchanged otherwise. A device named "USB" is burned even when the
    /// bootloader entry failed.
    void burnWithRetry(bool *ok, bool bootloaderOk);

    /// The same through the HID flasher; returns whether it succeeded.
    bool burnOverHid();

    /// Asks `program` to reset the device.
    bool RunCmdReset(const QString &program);

private:
    bool burnUpToTenTimes(const QString &program);

    Reporter &m_reporter;
    ProgressPicture &m_picture;
    LiveState &m_state;
    Clock &m_clock;
    const UpdatePaths &m_paths;
};
