#include "cli/output/ExitCode.h"

#include <gtest/gtest.h>

namespace {

constexpr UpdateStage before = UpdateStage::Fetching;
constexpr UpdateStage during = UpdateStage::Flashing;

struct Row
{
    UpdateReason reason;
    UpdateStage stage;
    int exitCode;
};

const Row rows[] = {
    {UpdateReason::None, UpdateStage::Resetting, 0},
    {UpdateReason::NoDevice, UpdateStage::Idle, 3},
    {UpdateReason::AnotherCopy, UpdateStage::Idle, 6},
    {UpdateReason::ToolMissing, UpdateStage::Idle, 5},
    {UpdateReason::NoAccess, UpdateStage::Idle, 5},
    {UpdateReason::FolderUnusable, before, 5},
    {UpdateReason::NoModelChosen, UpdateStage::Idle, 2},
    {UpdateReason::ImageUnreadable, UpdateStage::Idle, 4},
    {UpdateReason::AddressNotFound, before, 4},
    {UpdateReason::DownloadFailed, before, 4},
    {UpdateReason::ChecksumMismatch, before, 4},
    {UpdateReason::SignatureRefused, UpdateStage::Idle, 4},
    {UpdateReason::SignatureRefused, before, 4},
    {UpdateReason::BootloaderNotEntered, UpdateStage::EnteringBootloader, 1},
    {UpdateReason::UnknownWriteType, UpdateStage::EnteringBootloader, 1},
    {UpdateReason::ToolNotStarted, UpdateStage::EnteringBootloader, 1},
    {UpdateReason::ToolNotStarted, during, 1},
    {UpdateReason::ToolNotStarted, UpdateStage::AskingProgrammer, 5},
    {UpdateReason::DeviceNotReachable, UpdateStage::EnteringBootloader, 1},
    {UpdateReason::DeviceNotReachable, UpdateStage::Programming, 1},
    {UpdateReason::WritingFailed, during, 1},
    {UpdateReason::WritingFailed, UpdateStage::Programming, 1},
    {UpdateReason::ImageRefused, UpdateStage::AskingProgrammer, 4},
    {UpdateReason::NoPanel, UpdateStage::AskingProgrammer, 5},
    {UpdateReason::ProgramClosed, UpdateStage::Idle, 130},
    {UpdateReason::ProgramClosed, before, 130},
    {UpdateReason::ProgramClosed, UpdateStage::AskingForModel, 130},
    {UpdateReason::ProgramClosed, UpdateStage::AskingProgrammer, 130},
    {UpdateReason::ProgramClosed, UpdateStage::EnteringBootloader, 1},
    {UpdateReason::ProgramClosed, during, 1},
    {UpdateReason::ProgramClosed, UpdateStage::Programming, 1},
};

TEST(ExitCodeTest, EachReasonHasItsExitCode)
{
    for (const Row &row : rows)
        EXPECT_EQ(static_cast<int>(exitCodeOf({outcomeOf(row.reason), row.stage, row.reason})), row.exitCode)
            << "reason " << static_cast<int>(row.reason) << " in stage " << static_cast<int>(row.stage);
}

TEST(ExitCodeTest, TheTableHasEveryReason)
{
    for (int reason = 0; reason <= static_cast<int>(UpdateReason::ProgramClosed); ++reason)
        EXPECT_TRUE(std::any_of(std::begin(rows), std::end(rows), [=](const Row &row) {
            return static_cast<int>(row.reason) == reason;
        })) << reason;
}

} // namespace
