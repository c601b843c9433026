#pragma once

#include "session/UpdateStage.h"

/// Why an update did not succeed.
enum class UpdateReason {
    None,
    NoDevice,             ///< No such device was connected.
    AnotherCopy,          ///< Another copy of the program is updating a device.
    ToolMissing,          ///< A tool that the update needs is not there or may not be run.
    NoAccess,             ///< The user may not open the device.
    FolderUnusable,       ///< The temporary folder cannot be made or written.
    NoModelChosen,        ///< The user closed the chooser without an answer.
    ImageUnreadable,      ///< The image file cannot be read.
    AddressNotFound,      ///< The manifest did not arrive or has no address for the model.
    DownloadFailed,       ///< The image did not arrive completely.
    ChecksumMismatch,     ///< The image has another checksum than the manifest says, or there is none.
    SignatureRefused,     ///< The image has no valid signature of its maker's, where one is needed.
    BootloaderNotEntered, ///< The device did not take the update-mode report.
    UnknownWriteType,     ///< The write type is neither "USB" nor "HID".
    ToolNotStarted,       ///< The flasher or the IAP programmer could not be started.
    DeviceNotReachable,   ///< The flasher, or the IAP programmer, did not find the device.
    WritingFailed,        ///< The flasher, or the IAP programmer, ended without success.
    ImageRefused,         ///< The IAP programmer takes no other files than ".bin".
    NoPanel,              ///< The IAP panel is not there yet.
    ProgramClosed,        ///< The program was closed.
};

/// How an update ended.
struct UpdateResult
{
    enum class Outcome { Succeeded, Failed, Cancelled };

    Outcome outcome = Outcome::Failed;
    /// The last stage that the update reached.
    UpdateStage stage = UpdateStage::Idle;
    UpdateReason reason = UpdateReason::None;

    bool operator==(const UpdateResult &other) const
    {
        return outcome == other.outcome && stage == other.stage && reason == other.reason;
    }
};

/// Returns the outcome that a reason stands for.
UpdateResult::Outcome outcomeOf(UpdateReason reason);
