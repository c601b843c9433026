#pragma once

/// The stage of an update.
enum class UpdateStage {
    Idle,               ///< No update is running.
    Fetching,           ///< The image is obtained; the device is not changed yet.
    AskingForModel,     ///< The user is asked which model waits in its bootloader.
    EnteringBootloader, ///< The device is restarted into its bootloader, or expected there.
    Flashing,           ///< A flasher runs: the device is being written.
    Resetting,          ///< The written device is restarted.
    AskingProgrammer,   ///< The IAP programmer is asked for its ports and devices.
    Programming,        ///< The IAP programmer runs: the device is being written.
    Blocked,            ///< An automatic launch mode has run its one update. No other can start.
    ProgramClosed,      ///< The program was closed during an update. No other can start.
};
