#pragma once

#include "cli/output/CliReporter.h"
#include "cli/output/EventSink.h"
#include "devices/ConnectionMonitor.h"
#include "session/AwakeWhileWriting.h"
#include "session/UpdateSession.h"
#include "update/UpdateChoices.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"

#include <QString>

#include <memory>

class CommandContext;
class IapProgrammer;

/// One update of one device, from the choice of the image to the result. Used on the main thread, where it
/// waits in an event loop; the update itself runs on a thread of the global pool.
class UpdateRun : public UpdateHost
{
public:
    /// What to update: a device that the monitor has found, and the write type "USB" or "HID".
    struct Target
    {
        MonitorOutcome found;
        QString writeType;
    };

    /// The arguments must outlive the run.
    UpdateRun(CommandContext &context, UpdateSession &session, CliReporter &reporter);
    ~UpdateRun() override;

    /// Updates the device and returns how the update ended. The caller shows the result.
    UpdateSummary run(const Target &target);

    bool sendUpdateMode() override;
    bool startIapPanel() override;
    void setPictureLevel(double /*percent*/) override {}
    void repaintPicture() override {}

private:
    void onStageChanged(UpdateStage stage);
    UpdateReason prepareImage(const Target &target);
    bool copySignature(const QString &imageCopy) const;
    UpdateReason checkTool(const Target &target) const;
    void runWorkflow(const UpdateRequest &request);
    void runProgrammer();
    UpdatePaths paths() const;

    CommandContext &m_context;
    UpdateSession &m_session;
    CliReporter &m_reporter;
    UpdateChoices m_choices;
    UpdateSummary m_summary;
    AwakeWhileWriting m_awake;
};
