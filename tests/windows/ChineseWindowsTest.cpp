#include "tests/endtoend/EndToEnd.h"

namespace {

using namespace EndToEnd;

using ChineseWindowsTest = EndToEndTest;

TEST_F(ChineseWindowsTest, OnAChineseWindowsTheWindowIsChineseAndADeviceIsUpdated)
{
    UpdateScenario &s = scenario();
    s.program.setLocale(QStringLiteral("zh_CN.UTF-8"));
    EXPECT_EQ(update(), QStringLiteral("当前状态: 升级成功"));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("设备型号: DevMaa"));
    EXPECT_EQ(s.probe.read(QStringLiteral("backgroundWidget")).value(QLatin1String("windowTitle")).toString(),
              QStringLiteral("固件升级"));
    // The log contains the locale, too. It is UTF-8 although the system has a different code page.
    EXPECT_TRUE(s.program.updateLogLines().first().contains(QLatin1String(", zh_CN, ")));
}

} // namespace
