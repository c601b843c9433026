#pragma once

#include "session/UpdateSession.h"
#include "support/Clock.h"
#include "support/Reporter.h"
#include "update/FlasherOutput.h"
#include "update/ProgressPicture.h"
#include "update/UpdatePaths.h"

#include <QString>

#include <optional>

/// Runs the SoC vendor's command-line flashers and turns their output into progress. Lives and
/// runs on the update's thread; every wait ends when the program leaves, and then the child is killed.
class Flasher
{
public:
    /// What is burned, and on which model.
    struct Job
    {
        QString deviceName;
        QString imagePath;
    };

    /// All references must outlive the flasher. The session's update enters its flashing stage while a
    /// flasher runs.
    Flasher(Reporter &reporter, ProgressPicture &picture, UpdateSession &session, Clock &clock,
            const UpdatePaths &paths, const Job &job);

    /// Runs `program` once on an image and returns a BurnResult. There is no time limit.
    int runFlasher(const QString &program, const QString &imagePath);

    /// Up to ten runs of the USB flasher while it cannot reach the device. Sets *ok to true on
    /// success and leaves it unchanged otherwise. A device named "USB" is burned even when the
    /// bootloader entry failed.
    void burnWithRetry(bool *ok, bool bootloaderOk);

    /// The same through the HID flasher; returns whether it succeeded.
    bool burnOverHid();

    /// Returns how the last run of a flasher ended; nothing if none was tried.
    std::optional<BurnResult> lastResult() const { return m_lastResult; }

    /// Asks `program` to reset the device.
    bool RunCmdReset(const QString &program);

private:
    bool burnUpToTenTimes(const QString &program);

    Reporter &m_reporter;
    ProgressPicture &m_picture;
    UpdateSession &m_session;
    Clock &m_clock;
    const UpdatePaths &m_paths;
    const Job m_job;
    std::optional<BurnResult> m_lastResult;
};
