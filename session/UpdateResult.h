#pragma once

#include "session/UpdateStage.h"

/// Why an update did not succeed.
enum class UpdateReason {
    None,
    NoDevice,             ///< No such device was connected.
    AnotherCopy,          ///< Another copy of the program is updating a device.
    ToolMissing,          ///< A tool that the update needs is missing or may not be run.
    NoAccess,             ///< The user may not open the device.
    FolderUnusable,       ///< The temporary folder cannot be created or written.
    NoModelChosen,        ///< The user closed the chooser without an answer.
    ImageUnreadable,      ///< The image file cannot be read.
    AddressNotFound,      ///< The manifest did not arrive or has no address for the model.
    DownloadFailed,       ///< The image did not arrive completely.
    ChecksumMismatch,     ///< The image has a different checksum than the manifest, or the manifest has none.
    SignatureRefused,     ///< The image has no valid signature of the maker but needs one.
    BootloaderNotEntered, ///< The device did not accept the update-mode report.
    UnknownWriteType,     ///< The write type is neither "USB" nor "HID".
    ToolNotStarted,       ///< The flasher or the IAP programmer could not be started.
    DeviceNotReachable,   ///< The flasher, or the IAP programmer, did not find the device.
    WritingFailed,        ///< The flasher, or the IAP programmer, ended without success.
    ImageRefused,         ///< The image is for the IAP programmer but not a ".bin" file.
    NoPanel,              ///< The IAP panel does not exist yet.
    ProgramClosed,        ///< The program was closed.
};

/// The result of an update.
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

/// Returns the outcome of an update that ended for `reason`.
UpdateResult::Outcome outcomeOf(UpdateReason reason);
