#pragma once

#include "session/UpdateSession.h"
#include "support/Clock.h"
#include "support/log/Reporter.h"
#include "support/process/LaunchOptions.h"
#include "update/FirmwareSource.h"
#include "update/Flasher.h"
#include "update/UpdateChoices.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"

#include <optional>

/// One update from the press of the start button to its end: folders, image, bootloader, flasher, reset. Runs
/// on the update thread, which is one of the global pool; it reports through the Reporter and accesses no
/// widget.
class UpdateWorkflow
{
public:
    /// The objects that the workflow uses. They must outlive the run.
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

    /// Runs the update that was begun in the session, and ends it. If the IAP panel takes over, the panel
    /// ends it instead. In the automatic launch modes returns only when the program shuts down.
    void run();

private:
    /// Why the run has ended, or nothing while it continues.
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
