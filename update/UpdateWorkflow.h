#pragma once

#include "support/Clock.h"
#include "support/LaunchOptions.h"
#include "support/Reporter.h"
#include "update/FirmwareSource.h"
#include "update/Flasher.h"
#include "update/LiveState.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"

#include <optional>

/// One update from the press of the start button to its end: folders, image, bootloader, flasher,
/// reset. Runs on a thread of its own and reports everything; it shows no dialog and touches no widget.
class UpdateWorkflow
{
public:
    /// All references outlive the run.
    UpdateWorkflow(Reporter &reporter, LiveState &state, UpdateHost &host, Clock &clock,
                   const UpdatePaths &paths, const LaunchOptions &launch, FirmwareSource &source);

    /// How a run came out, for whoever has to end it.
    enum class Ending {
        ControlsBack, ///< the user may start the next one
        LaunchMode,   ///< nothing may be started any more
        HandedOver,   ///< the IAP panel carries on and gives the controls back
        Leaving,      ///< the program is ending
    };

    Ending run();

    /// Gives the controls back, or keeps them off; in the launch modes it returns only when the
    /// program leaves. Apart from run() so that the caller may declare the run ended first: the
    /// start button must not come back while a start would still be refused.
    void finish(Ending ending);

private:
    std::optional<Ending> obtainImage();
    bool prepareFolders();
    bool prepareFolder(const QString &path);
    bool isIapDevice() const;
    Ending handOverToIapPanel();
    bool enterBootloader();
    bool burn(const QString &writeType, bool bootloaderOk);
    bool burnOverHid(bool bootloaderOk);
    void reportResult(bool burned, const QString &writeType);
    void resetDevice(const QString &writeType);
    Ending ending() const;
    void blockInLaunchMode();

    Reporter &m_reporter;
    LiveState &m_state;
    UpdateHost &m_host;
    Clock &m_clock;
    const UpdatePaths &m_paths;
    const LaunchOptions &m_launch;
    FirmwareSource &m_source;
    Flasher m_flasher;
};
