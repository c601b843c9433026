#include "tests/endtoend/EndToEnd.h"

#include "harness/process/Polling.h"

namespace {

using namespace EndToEnd;

/// Devices with several HID interfaces, which are distinguished by the markers in their paths.
class HidPathTest : public EndToEndTest
{
protected:
    int openHandles()
    {
        return scenario()
            .bus.client()
            .request({{QStringLiteral("op"), QStringLiteral("hidOpened")}})
            .value(QLatin1String("count"))
            .toInt(-1);
    }

    int ticks() const
    {
        return m_scenario->program.updateLogLines().filter(QStringLiteral("Find deviceName: ")).size();
    }

    void expectUpdateThrough(const char *model, const char *marker)
    {
        UpdateScenario &s = scenario(model);
        const QJsonArray given = s.devices.first().value(QLatin1String("interfaces")).toArray();
        s.devices[0].insert(QStringLiteral("interfaces"), QJsonArray{given.at(1), given.at(0)});
        EXPECT_EQ(update(), upgradeSuccessful);
        EXPECT_EQ(s.burned(), s.image());
        EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:1"));
        // The scan ends with the interface that it searches for, here the second one.
        const QStringList seen = s.program.interfaceLog().split(QLatin1Char('\n'));
        ASSERT_GE(seen.size(), 2) << s.program.interfaceLog().toStdString();
        EXPECT_TRUE(seen.at(0).contains(QStringLiteral("Path:\\\\?\\hid#vid_"))) << seen.at(0).toStdString();
        EXPECT_FALSE(seen.at(0).contains(QLatin1String(marker))) << seen.at(0).toStdString();
        EXPECT_TRUE(seen.at(1).contains(QLatin1String(marker))) << seen.at(1).toStdString();
    }
};

TEST_F(HidPathTest, TheInterfaceIsFoundByMi00InItsPath)
{
    expectUpdateThrough("DevMah", "&mi_00#");
}

TEST_F(HidPathTest, TheInterfaceIsFoundByCol04InItsPath)
{
    expectUpdateThrough("DevMbr", "&col04#");
}

TEST_F(HidPathTest, HandlesDoNotAccumulateWhileTheDeviceIsMonitored)
{
    UpdateScenario &s = scenario("DevMah");
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(pollUntil([&] { return ticks() >= 4; })) << s.program.updateLog().toStdString();
    // A tick opens the new handle before it closes the old one.
    EXPECT_TRUE(pollUntil([&] { return openHandles() == 1; })) << openHandles();
    EXPECT_EQ(s.closeWindow(), 0);
    EXPECT_TRUE(pollUntil([&] { return openHandles() == 0; })) << openHandles();
}

} // namespace
