#pragma once

#include "session/UpdateSession.h"
#include "support/Clock.h"
#include "support/LaunchOptions.h"
#include "support/Reporter.h"
#include "update/FirmwareSource.h"
#include "update/Flasher.h"
#include "update/UpdateChoices.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"

#include <optional>

/// One update from the press of the start button to its end: folders, image, bootloader, flasher,
/// reset. Runs on a thread of its own and reports everything; it shows no dialog and touches no widget.
class UpdateWorkflow
{
public:
    /// What the workflow uses. Everything must outlive the run.
    struct Dependencies
    {
        Reporter &reporter;
        UpdateSession &session;
        UpdateChoices &choices;
        UpdateHost &host;
        Clock &clock;
        const UpdatePaths &paths;
        const LaunchOptions &launch;
        FirmwareSource &source;
    };

    UpdateWorkflow(const Dependencies &dependencies, const UpdateRequest &request);

    /// Runs the update that the session has begun, and ends it, unless the IAP panel carries on: then the
    /// panel ends it. In the automatic launch modes returns only when the program leaves.
    void run();

private:
    /// How a run ended. Empty while it goes on.
    using Ending = std::optional<UpdateReason>;

    Ending obtainImage();
    Ending checkLocalImage();
    Ending checkServerSignature(const QString &image, const QJsonObject &manifest);
    Ending endingOf(UpdateReason reason);
    bool prepareFolders();
    bool prepareFolder(const QString &path);
    Ending handOverToIapPanel();
    UpdateReason writeDevice();
    bool enterBootloader();
    UpdateReason burn(const QString &writeType, bool bootloaderOk);
    UpdateReason burnOverUsb(Flasher &flasher, bool bootloaderOk);
    UpdateReason burnOverHid(Flasher &flasher, bool bootloaderOk);
    void reportResult(bool burned, const QString &writeType);
    void resetDevice(const QString &writeType);
    void end(UpdateReason reason);
    bool mustBlock(UpdateReason reason) const;
    void blockInLaunchMode();
    Flasher makeFlasher() const;

    const Dependencies m_d;
    const UpdateRequest m_request;
};
