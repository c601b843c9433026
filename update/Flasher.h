#pragma once

#include "session/UpdateSession.h"
#include "support/Clock.h"
#include "support/log/Reporter.h"
#include "update/FlasherOutput.h"
#include "update/ProgressPicture.h"
#include "update/UpdatePaths.h"

#include <QString>

#include <optional>

/// Runs the SoC vendor's command-line flashers and converts their output to progress. Lives and runs on the
/// update's thread. If the program shuts down, all waits end and the flasher is killed.
class Flasher
{
public:
    /// The image to burn, and the model of the device.
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

    /// Runs the USB flasher, up to ten times as long as it cannot open the device. Sets `*ok` to true on
    /// success and leaves it unchanged otherwise. Burns a device named "USB" even if entering the bootloader
    /// failed.
    void burnWithRetry(bool *ok, bool bootloaderOk);

    /// Runs the HID flasher in the same way. Returns whether it succeeded.
    bool burnOverHid();

    /// Returns the result of the last run of a flasher, or nothing if there was none.
    std::optional<BurnResult> lastResult() const { return m_lastResult; }

    /// Runs `program` to reset the device.
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
