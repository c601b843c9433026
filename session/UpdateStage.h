#pragma once

/// How far an update has got.
enum class UpdateStage {
    Idle,               ///< No update is going on.
    Fetching,           ///< The image is obtained; the device is untouched.
    AskingForModel,     ///< The user is asked which model waits in its bootloader.
    EnteringBootloader, ///< The device is sent into its bootloader, or waited for there.
    Flashing,           ///< A flasher runs: the device is being written.
    Resetting,          ///< The written device is restarted.
    AskingProgrammer,   ///< The IAP programmer is asked for its ports and devices.
    Programming,        ///< The IAP programmer runs: the device is being written.
    Blocked,            ///< An automatic launch mode has done its one update. Nothing starts any more.
    Leaving,            ///< The program was closed during an update. Nothing starts any more.
};
