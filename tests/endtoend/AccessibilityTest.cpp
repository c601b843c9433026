#include "tests/endtoend/AccessibilityTest.h"

#include "harness/session/ModelOnBus.h"

#include <algorithm>

namespace {

using namespace EndToEnd;

struct SpokenNames
{
    const char *locale;
    const char *window;
    const char *connectType;
    const char *page;
    const char *partitions;
    const char *restart;
    const char *progress;
    const char *file;
    const char *chooseFile;
    const char *log;
    const char *start;
    const char *detected;
    const char *successful;
    const char *chooser;
};

const SpokenNames english{"en_US.UTF-8",
                          "Quillmarsh",
                          "ConnType:",
                          "FlashTheImage",
                          "Select flash",
                          "Restart the device after a successful flash",
                          "Update progress",
                          "Firmware file",
                          "Choose firmware file",
                          "Log",
                          "Start",
                          "Device Detected, DevMaa",
                          "CurrentStatus: Upgrade Successful",
                          "Choose your device"};
const SpokenNames chinese{
    "zh_CN.UTF-8",        "固件升级",         "连接方式:",          "烧写镜像",     "选择分区烧写",
    "烧写成功后重启设备", "升级进度",         "固件文件",           "选择固件文件", "日志",
    "开始升级",           "发现设备, DevMaa", "当前状态: 升级成功", "选择你的设备"};

/// What a screen reader finds, hears and does in the program's window, in both languages.
class SpokenTest : public AccessibilityTest, public testing::WithParamInterface<SpokenNames>
{
protected:
    void start() { AccessibilityTest::start(GetParam().locale); }
};

TEST_P(SpokenTest, EveryControlHasANameAndARole)
{
    const SpokenNames &names = GetParam();
    start();
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.probe.check(QStringLiteral("logBox")));
    ASSERT_TRUE(s.probe.check(QStringLiteral("iapBox")));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("iapPanel"), true));
    // Shows the row of the firmware file.
    ASSERT_TRUE(s.probe.click(QStringLiteral("flashingPage"),
                              {{QStringLiteral("x"), 730},
                               {QStringLiteral("y"), 310},
                               {QStringLiteral("button"), QStringLiteral("middle")}}));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("firmwareFileEdit"), true));

    const Controls main = controlsOf(names.window);
    EXPECT_EQ(main, (Controls{{"page tab list", names.page},
                              {"page tab", names.page},
                              {"combo box", "USB"},
                              {"check box", names.partitions},
                              {"check box", "spl"},
                              {"check box", "env"},
                              {"check box", "os"},
                              {"check box", "rodata"},
                              {"check box", "data"},
                              {"check box", names.restart},
                              {"check box", "IAPSet"},
                              {"progress bar", names.progress},
                              {"text", names.file},
                              {"push button", names.chooseFile},
                              {"check box", names.log},
                              {"push button", names.start}}));
    EXPECT_EQ(labelsOf(names.window, "combo box", "USB"), std::set<std::string>{names.connectType});

    const char *panel = "IAP UpDate";
    EXPECT_EQ(controlsOf(panel), (Controls{{"combo box", "USART"},
                                           // Nothing to choose yet: its label.
                                           {"combo box", "Port Name: "},
                                           {"combo box", "110"},
                                           {"text", "Address(0x): "},
                                           {"text", "App Start Address(0x): "},
                                           {"check box", "CRC Verify after download: "},
                                           {"push button", "Download"}}));
    EXPECT_EQ(labelsOf(panel, "combo box", "USART"), std::set<std::string>{"Port Type: "});
    EXPECT_EQ(labelsOf(panel, "combo box", "Port Name: "), std::set<std::string>{"Port Name: "});
    EXPECT_EQ(labelsOf(panel, "combo box", "110"), std::set<std::string>{"Baud Rate: "});
    EXPECT_EQ(controlsOf("Log"), (Controls{{"text", names.log}}));
    EXPECT_EQ(roleOfWindow(names.window), "frame");
    EXPECT_EQ(roleOfWindow(panel), "frame");
}

TEST_P(SpokenTest, AnUpdateByKeyboardIsAnnounced)
{
    const SpokenNames &names = GetParam();
    start();
    UpdateScenario &s = scenario();
    ASSERT_TRUE(waitUntilHeard("notification", names.detected)) << everythingHeard();
    const std::vector<std::string> order = tabTo(names.start);
    EXPECT_EQ(order, (std::vector<std::string>{"USB", names.partitions, names.restart, "IAPSet", names.log,
                                               names.start}));
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(waitUntilHeard("notification", names.successful)) << everythingHeard();
    EXPECT_EQ(s.burned(), s.image());
    // Events do not say the value; a reader asks for it, and may be told a later one.
    std::vector<double> progress;
    EXPECT_TRUE(pollUntil([&] {
        progress = valuesHeard(names.progress);
        return !progress.empty() && progress.back() == 100.0;
    }));
    EXPECT_GE(progress.size(), 6U) << "16, 32, 48, 64, 80 and 100 per cent";
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    // The disabled button cannot keep the focus; enabled again it has it.
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true));
    EXPECT_TRUE(waitForFocus(names.start)) << focused();
}

TEST_P(SpokenTest, ADeviceIsChosenByKeyboard)
{
    const SpokenNames &names = GetParam();
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("ootloader")) ||
                s.probe.waitForText(connection, QStringLiteral("Bootloader")));
    tabTo(names.start);
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    EXPECT_EQ(controlsOf(names.chooser), (Controls{{"push button", "DevMaa"}}));
    tabTo("DevMaa");
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(waitUntilHeard("notification", names.successful)) << everythingHeard();
    EXPECT_EQ(s.burned(), s.image());
}

/// A device with a microcontroller, programmed with the keyboard alone.
class SpokenPanelTest : public AccessibilityTest
{
protected:
    const QString programmer = QStringLiteral("IAP_Programmer.exe");

    int programmedSoFar()
    {
        const QList<QStringList> runs = argumentsOf(scenario().program, programmer);
        return static_cast<int>(std::count_if(runs.begin(), runs.end(), [](const QStringList &arguments) {
            return arguments.value(0) == QLatin1String("Start");
        }));
    }
};

TEST_F(SpokenPanelTest, AMicrocontrollerIsProgrammedByKeyboard)
{
    UpdateScenario &s = scenario("DevMdq");
    start("en_US.UTF-8");
    ASSERT_TRUE(waitUntilHeard("notification", "IAP Device Detected, DevMdq")) << everythingHeard();
    tabTo("Start");
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(waitUntilHeard("notification", "Current Status: Upgrade Successful")) << everythingHeard();
    EXPECT_EQ(programmedSoFar(), 1);

    // The panel opens with the focus, and its Download programs the same image once more.
    ASSERT_TRUE(waitForFocus("Start"));
    tabTo("IAPSet");
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("iapPanel"), true));
    ASSERT_TRUE(waitForFocus("USB")) << focused();
    const std::vector<std::string> order = tabTo("Download");
    EXPECT_EQ(order, (std::vector<std::string>{"DevMdq", "Baud Rate: ", "App Start Address(0x): ",
                                               "CRC Verify after download: ", "Download"}));
    ASSERT_TRUE(press({"space"}));
    ASSERT_TRUE(pollUntil([&] { return programmedSoFar() == 2; }));
    ASSERT_TRUE(s.probe.waitForEnabled(QStringLiteral("iapDownload"), true, updateLimitMs));
    EXPECT_EQ(s.burned(), s.image());

    ASSERT_TRUE(press({"alt+F4"}));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("iapPanel"), false));
    EXPECT_TRUE(waitForFocus("IAPSet")) << focused();
}

INSTANTIATE_TEST_SUITE_P(InEachLanguage, SpokenTest, testing::Values(english, chinese),
                         [](const testing::TestParamInfo<SpokenNames> &language) {
                             return std::string(language.param.locale).substr(0, 5);
                         });

} // namespace
