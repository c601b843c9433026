#pragma once

#include "cli/CliReporter.h"
#include "cli/EventSink.h"
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

/// One update of one device, from the choice of the image to the result. Lives on the main thread, whose
/// event loop it runs; the update itself runs on a thread of its own.
class UpdateRun : public UpdateHost
{
public:
    /// What is asked for: a device that the monitor has found, and the write type "USB" or "HID".
    struct Target
    {
        MonitorOutcome found;
        QString writeType;
    };

    /// All must outlive the run.
    UpdateRun(CommandContext &context, UpdateSession &session, CliReporter &reporter);
    ~UpdateRun() override;

    /// Updates the device and returns how it ended, after the sink was told.
    UpdateSummary run(const Target &target);

    bool sendUpdateMode() override;
    bool startIapPanel() override;
    void setPictureLevel(double /*percent*/) override {}
    void repaintPicture() override {}

private:
    void noteStage(UpdateStage stage);
    UpdateReason prepareImage(const Target &target);
    bool copySignature(const QString &imageCopy) const;
    UpdateReason missingTool(const Target &target) const;
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
