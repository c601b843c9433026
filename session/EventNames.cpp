#include "session/EventNames.h"

QLatin1String EventNames::of(UpdateStage stage)
{
    switch (stage) {
    case UpdateStage::Idle:
        return QLatin1String("idle");
    case UpdateStage::Fetching:
        return QLatin1String("fetching");
    case UpdateStage::AskingForModel:
        return QLatin1String("asking-for-model");
    case UpdateStage::EnteringBootloader:
        return QLatin1String("entering-bootloader");
    case UpdateStage::Flashing:
        return QLatin1String("flashing");
    case UpdateStage::Resetting:
        return QLatin1String("resetting");
    case UpdateStage::AskingProgrammer:
        return QLatin1String("asking-programmer");
    case UpdateStage::Programming:
        return QLatin1String("programming");
    case UpdateStage::Blocked:
        return QLatin1String("blocked");
    case UpdateStage::ProgramClosed:
        return QLatin1String("leaving");
    }
    return {};
}

QLatin1String EventNames::of(UpdateReason reason)
{
    switch (reason) {
    case UpdateReason::None:
        return QLatin1String("none");
    case UpdateReason::NoDevice:
        return QLatin1String("no-device");
    case UpdateReason::AnotherCopy:
        return QLatin1String("another-copy");
    case UpdateReason::ToolMissing:
        return QLatin1String("tool-missing");
    case UpdateReason::NoAccess:
        return QLatin1String("no-access");
    case UpdateReason::FolderUnusable:
        return QLatin1String("folder-unusable");
    case UpdateReason::NoModelChosen:
        return QLatin1String("no-model-chosen");
    case UpdateReason::ImageUnreadable:
        return QLatin1String("image-unreadable");
    case UpdateReason::AddressNotFound:
        return QLatin1String("address-not-found");
    case UpdateReason::DownloadFailed:
        return QLatin1String("download-failed");
    case UpdateReason::ChecksumMismatch:
        return QLatin1String("checksum-mismatch");
    case UpdateReason::SignatureRefused:
        return QLatin1String("signature-refused");
    case UpdateReason::BootloaderNotEntered:
        return QLatin1String("bootloader-not-entered");
    case UpdateReason::UnknownWriteType:
        return QLatin1String("unknown-write-type");
    case UpdateReason::ToolNotStarted:
        return QLatin1String("tool-not-started");
    case UpdateReason::DeviceNotReachable:
        return QLatin1String("device-not-reachable");
    case UpdateReason::WritingFailed:
        return QLatin1String("writing-failed");
    case UpdateReason::ImageRefused:
        return QLatin1String("image-refused");
    case UpdateReason::NoPanel:
        return QLatin1String("not-prepared");
    case UpdateReason::ProgramClosed:
        return QLatin1String("interrupted");
    }
    return {};
}

QLatin1String EventNames::of(UpdateResult::Outcome outcome)
{
    switch (outcome) {
    case UpdateResult::Outcome::Succeeded:
        return QLatin1String("succeeded");
    case UpdateResult::Outcome::Failed:
        return QLatin1String("failed");
    case UpdateResult::Outcome::Cancelled:
        return QLatin1String("cancelled");
    }
    return {};
}
