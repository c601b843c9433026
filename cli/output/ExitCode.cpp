#include "cli/output/ExitCode.h"

namespace {

/// Returns whether an update that ends in this stage has not yet changed the device.
bool isUntouched(UpdateStage stage)
{
    return stage == UpdateStage::Idle || stage == UpdateStage::Fetching ||
           stage == UpdateStage::AskingForModel || stage == UpdateStage::AskingProgrammer;
}

} // namespace

ExitCode exitCodeOf(const UpdateResult &result)
{
    if (result.outcome == UpdateResult::Outcome::Succeeded)
        return ExitCode::Done;
    switch (result.reason) {
    case UpdateReason::NoDevice:
        return ExitCode::NoDevice;
    case UpdateReason::AnotherCopy:
        return ExitCode::AnotherCopy;
    case UpdateReason::ToolMissing:
    case UpdateReason::NoAccess:
        return ExitCode::NotPrepared;
    case UpdateReason::ImageUnreadable:
    case UpdateReason::AddressNotFound:
    case UpdateReason::DownloadFailed:
    case UpdateReason::ChecksumMismatch:
    case UpdateReason::SignatureRefused:
    case UpdateReason::ImageRefused:
        return ExitCode::FirmwareUnusable;
    case UpdateReason::FolderUnusable:
    case UpdateReason::NoPanel:
        return ExitCode::NotPrepared;
    case UpdateReason::ToolNotStarted:
        return isUntouched(result.stage) ? ExitCode::NotPrepared : ExitCode::UpdateFailed;
    case UpdateReason::NoModelChosen:
        return ExitCode::Usage;
    case UpdateReason::ProgramClosed:
        return isUntouched(result.stage) ? ExitCode::Interrupted : ExitCode::UpdateFailed;
    default:
        return ExitCode::UpdateFailed;
    }
}

ExitCode exitCodeOf(const QVector<Finding> &findings, ExitCode problemCode)
{
    return Findings::hasProblem(findings) ? problemCode : ExitCode::Done;
}
