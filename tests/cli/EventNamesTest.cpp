#include "session/EventNames.h"

#include "cli/output/DeviceStates.h"
#include "tests/common/TextList.h"

#include <gtest/gtest.h>

namespace {

/// Returns the names of all values up to `last`.
template <typename Enumeration, typename NameOf>
QStringList names(Enumeration last, const NameOf &nameOf)
{
    QStringList all;
    for (int value = 0; value <= static_cast<int>(last); ++value)
        all.append(nameOf(static_cast<Enumeration>(value)));
    return all;
}

TEST(EventNamesTest, EachStageHasTheNameThatCompanionsRelyOn)
{
    EXPECT_EQ(names(UpdateStage::ProgramClosed, [](UpdateStage stage) { return EventNames::of(stage); }),
              list({"idle", "fetching", "asking-for-model", "entering-bootloader", "flashing", "resetting",
                    "asking-programmer", "programming", "blocked", "leaving"}));
}

TEST(EventNamesTest, EachReasonHasTheNameThatCompanionsRelyOn)
{
    EXPECT_EQ(names(UpdateReason::ProgramClosed, [](UpdateReason reason) { return EventNames::of(reason); }),
              list({"none",
                    "no-device",
                    "another-copy",
                    "tool-missing",
                    "no-access",
                    "folder-unusable",
                    "no-model-chosen",
                    "image-unreadable",
                    "address-not-found",
                    "download-failed",
                    "checksum-mismatch",
                    "signature-refused",
                    "bootloader-not-entered",
                    "unknown-write-type",
                    "tool-not-started",
                    "device-not-reachable",
                    "writing-failed",
                    "image-refused",
                    "not-prepared",
                    "interrupted"}));
}

TEST(EventNamesTest, EachOutcomeAndEachDeviceStateHasTheNameThatCompanionsRelyOn)
{
    using Outcome = UpdateResult::Outcome;
    EXPECT_EQ(names(Outcome::Cancelled, [](Outcome outcome) { return EventNames::of(outcome); }),
              list({"succeeded", "failed", "cancelled"}));
    using State = DeviceInfo::State;
    EXPECT_EQ(names(State::SwitchedOff, [](State state) { return DeviceStates::nameOf(state); }),
              list({"ready", "bootloader", "iap", "no-permission", "switched-off"}));
}

TEST(EventNamesTest, NoTwoValuesHaveTheSameName)
{
    EXPECT_EQ(names(UpdateStage::ProgramClosed, [](UpdateStage stage) { return EventNames::of(stage); })
                  .removeDuplicates(),
              0);
    EXPECT_EQ(names(UpdateReason::ProgramClosed, [](UpdateReason reason) { return EventNames::of(reason); })
                  .removeDuplicates(),
              0);
}

} // namespace
