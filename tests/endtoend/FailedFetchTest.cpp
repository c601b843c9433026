#include "tests/endtoend/EndToEnd.h"

#include <QElapsedTimer>

namespace {

using namespace EndToEnd;

/// A run without an image ends before the device is changed.
class FailedFetchTest : public EndToEndTest
{
};

TEST_F(FailedFetchTest, AnImageWithAWrongMd5IsNotFlashed)
{
    UpdateScenario &s = scenario();
    s.firmware.setField(s.model(), QStringLiteral("md5"), QStringLiteral("00000000000000000000000000000000"));
    EXPECT_EQ(update(), md5Failed);
    EXPECT_TRUE(logHas("File MD5 mismatch."));
    expectUntouchedDevice();
}

TEST_F(FailedFetchTest, AManifestWithoutTheDeviceEndsWithTheMd5Title)
{
    UpdateScenario &s = scenario();
    s.firmware.setManifest(R"({"CurrentVersion":{"DevOther":{"fileURL":"http://127.0.0.1/x","md5":"0"}}})");
    EXPECT_EQ(update(), md5Failed);
    EXPECT_TRUE(logHas("Value for keyDevMaais not an object."));
    EXPECT_TRUE(logHas("Get File Address Failed!"));
    EXPECT_TRUE(logHas("get file md5 failed.!"));
    expectUntouchedDevice();
}

TEST_F(FailedFetchTest, AServerThatIsGoneIsGivenUpAfterTwentySeconds)
{
    UpdateScenario &s = scenario();
    s.withServer = false;
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.pressStart());
    const RunningTimer running;
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(s.probe.waitForText(title, md5Failed, updateLimitMs)) << s.probe.errorText().toStdString();
    EXPECT_GE(timer.elapsed(), 19500);
    EXPECT_LT(running.elapsed(), 25000);
    EXPECT_TRUE(logHas("Download failed due to timeout."));
    EXPECT_EQ(titleWhenIdle(), md5Failed);
    expectUntouchedDevice();
}

} // namespace
