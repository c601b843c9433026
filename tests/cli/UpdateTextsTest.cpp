#include "cli/output/UpdateTexts.h"

#include "checks/Texts.h"

#include <gtest/gtest.h>

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

struct Row
{
    UpdateStage stage;
    std::optional<UpdateProgress> progress;
    qint64 elapsedMs;
    int width;
    const char *text;
};

UpdateProgress bytes(int percent, qint64 received, qint64 total)
{
    return {percent, received, total};
}

const Row rows[] = {
    {UpdateStage::Fetching, {}, 5000, 80, "Fetching the firmware"},
    {UpdateStage::Fetching, bytes(0, 0, 8 * mebibyte), 5000, 80, "Fetching the firmware  0 %  0.0 / 8.0 MiB"},
    // No rate in the first second.
    {UpdateStage::Fetching, bytes(50, 4 * mebibyte, 8 * mebibyte), 999, 80,
     "Fetching the firmware  50 %  4.0 / 8.0 MiB"},
    {UpdateStage::Fetching, bytes(50, 4 * mebibyte, 8 * mebibyte), 2000, 80,
     "Fetching the firmware  50 %  4.0 / 8.0 MiB  2.0 MiB/s  0:02"},
    {UpdateStage::Fetching, bytes(1, mebibyte, 101 * mebibyte), 1000, 80,
     "Fetching the firmware  1 %  1.0 / 101.0 MiB  1.0 MiB/s  1:40"},
    {UpdateStage::Fetching, bytes(100, 8 * mebibyte, 8 * mebibyte), 4000, 80,
     "Fetching the firmware  100 %  8.0 / 8.0 MiB  2.0 MiB/s  0:00"},
    {UpdateStage::Fetching, bytes(50, 4 * mebibyte, 8 * mebibyte), 2000, 24, "Fetching the firmware  5"},
    {UpdateStage::Flashing, UpdateProgress{48, {}, {}}, 9000, 80,
     "Writing the device: do not disconnect it  48 %"},
    {UpdateStage::Programming, {}, 0, 80, "Writing the device: do not disconnect it"},
    {UpdateStage::EnteringBootloader, {}, 0, 80, "Entering the bootloader"},
    {UpdateStage::Resetting, {}, 0, 80, "Restarting the device"},
    {UpdateStage::AskingProgrammer, {}, 0, 80, "Asking the programmer"},
    {UpdateStage::Idle, {}, 0, 80, ""},
};

TEST(UpdateTextsTest, TheLineHasStageProgressRateAndRemainingTime)
{
    for (const Row &row : rows)
        EXPECT_EQ(UpdateTexts::progressLine(row.stage, row.progress, row.elapsedMs, row.width),
                  QLatin1String(row.text));
}

UpdateSummary summaryOf(UpdateReason reason, UpdateStage stage)
{
    UpdateSummary summary;
    summary.result = {outcomeOf(reason), stage, reason};
    summary.exitCode = exitCodeOf(summary.result);
    summary.model = QStringLiteral("DevMaa");
    return summary;
}

TEST(UpdateTextsTest, TheEndingSaysWhatHappenedAndWhatToDo)
{
    EXPECT_EQ(UpdateTexts::ending(summaryOf(UpdateReason::None, UpdateStage::Resetting)),
              QStringLiteral("DevMaa was updated."));
    EXPECT_EQ(
        UpdateTexts::ending(summaryOf(UpdateReason::ChecksumMismatch, UpdateStage::Fetching)),
        QStringLiteral("The update failed: the firmware is not what was promised: its checksum is wrong. "
                       "The device was not touched. Try again later, or ask the firmware's maker."));
    EXPECT_EQ(UpdateTexts::ending(summaryOf(UpdateReason::NoDevice, UpdateStage::Idle)),
              QStringLiteral("The update failed: no such device is connected."));
    EXPECT_EQ(UpdateTexts::ending(summaryOf(UpdateReason::ProgramClosed, UpdateStage::Fetching)),
              QStringLiteral("The update was cancelled: it was interrupted. The device was not touched."));
    EXPECT_EQ(UpdateTexts::ending(summaryOf(UpdateReason::WritingFailed, UpdateStage::Flashing)),
              QStringLiteral(
                  "The update failed: the tool ended without success. Keep the device connected and update "
                  "it again. If it waits in its bootloader, name its model with --model."));
}

TEST(UpdateTextsTest, EachReasonHasADifferentTextInBothLanguages)
{
    for (const Texts::Language language : {Texts::Language::English, Texts::Language::Chinese}) {
        Texts::setLanguage(language);
        QStringList endings;
        for (int reason = 1; reason <= static_cast<int>(UpdateReason::ProgramClosed); ++reason)
            endings.append(
                UpdateTexts::ending(summaryOf(static_cast<UpdateReason>(reason), UpdateStage::Fetching)));
        EXPECT_EQ(endings.removeDuplicates(), 0);
        EXPECT_EQ(endings.filter(QStringLiteral(": .")) + endings.filter(QStringLiteral(":。")),
                  QStringList());
    }
    Texts::setLanguage(Texts::Language::English);
}

} // namespace
