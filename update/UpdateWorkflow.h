#pragma once

#include "support/Clock.h"
#include "support/LaunchOptions.h"
#include "support/Reporter.h"
#include "update/FirmwareSource.h"
#include "update/Flasher.h"
#include "update/LiveState.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"

/// One update from the press of the start button to its end: folders, image, bootloader, flasher,
/// reset. Runs on a thread of its own and reports everything; it shows no dialog and touches no widget.
class UpdateWorkflow
{
public:
    /// All references outlive the run.
    UpdateWorkflow(Reporter &reporter, LiveState &state, UpdateHost &host, Clock &clock,
                   const UpdatePaths &paths, const LaunchOptions &launch, FirmwareSource &source);

    /// Returns when the controls have been given back; in the launch modes only when the program leaves.
    void run();

private:
    enum class Next { GoOn, End, LaunchModeEnding };

    Next obtainImage();
    bool prepareFolders();
    bool handOverToIapPanel();
    bool enterBootloader();
    bool burn(const QString &writeType, bool bootloaderOk);
    bool burnOverHid(bool bootloaderOk);
    void reportResult(bool burned, const QString &writeType);
    void resetDevice(const QString &writeType);
    void end();
    void blockInLaunchMode();
    void giveControlsBack();

    Reporter &m_reporter;
    LiveState &m_state;
    UpdateHost &m_host;
    Clock &m_clock;
    const UpdatePaths &m_paths;
    const LaunchOptions &m_launch;
    FirmwareSource &m_source;
    Flasher m_flasher;
};
