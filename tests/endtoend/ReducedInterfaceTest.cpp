#include "tests/endtoend/EndToEnd.h"

namespace {

/// The locale, the title of the window, and the beginning and the end of the notice.
struct ReducedCase
{
    const char *locale;
    const char *windowTitle;
    const char *noticeBegins;
    const char *noticeEnds;
    int noticeLines;
};

/// Prints the name of a case.
std::ostream &operator<<(std::ostream &out, const ReducedCase &each)
{
    return out << each.locale;
}

/// The window of the launch modes.
class ReducedInterfaceTest : public EndToEndTest, public testing::WithParamInterface<ReducedCase>
{
};

TEST_P(ReducedInterfaceTest, TheNoticeTakesTheControlsPlace)
{
    UpdateScenario &s = scenario("ZN58");
    s.withServer = false;
    s.devices = {};
    s.program.setLocale(QString::fromLatin1(GetParam().locale));
    s.arguments = QStringList{QStringLiteral("ZN58UpDate")};
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("noticeLabel"), true));
    for (const char *hidden :
         {"startButton", "iapBox", "restartBox", "partitionSelectBox", "divider", "connectTypeLabel",
          "partitionSeparator", "writeTypeBox", "firmwareFileEdit", "chooseFileButton"}) {
        const QJsonObject seen = s.probe.read(QLatin1String(hidden));
        ASSERT_FALSE(seen.isEmpty()) << hidden;
        EXPECT_FALSE(seen.value(QLatin1String("visible")).toBool(true)) << hidden;
    }
    for (const char *shown : {"flashingPage", "statusLabel", "deviceModelLabel", "serverVersionLabel",
                              "stateTitleLabel", "logBox", "progressBar"})
        EXPECT_TRUE(s.probe.isVisible(QLatin1String(shown))) << shown;
    const QJsonArray tabs = s.probe.read(QStringLiteral("tabBar")).value(QLatin1String("tabs")).toArray();
    ASSERT_EQ(tabs.size(), 1);
    EXPECT_FALSE(tabs.first().toObject().value(QLatin1String("visible")).toBool(true));
    const QString notice = s.probe.text(QStringLiteral("noticeLabel"));
    EXPECT_TRUE(notice.startsWith(QString::fromUtf8(GetParam().noticeBegins))) << notice.toStdString();
    EXPECT_TRUE(notice.endsWith(QString::fromUtf8(GetParam().noticeEnds))) << notice.toStdString();
    EXPECT_EQ(notice.count(QLatin1Char('\n')) + 1, GetParam().noticeLines);
    EXPECT_FALSE(s.probe.window(QString::fromUtf8(GetParam().windowTitle)).isEmpty());
}

const ReducedCase reducedCases[] = {
    {"en_US.UTF-8", "Quillmarsh", "    Warm Tips:\n\n    1. ", "please manually reopen the software.", 16},
    {"zh_CN.UTF-8", "固件升级", "    温馨提示:\n\n    1.在固件", "      请手动打开软件。", 13},
    // The country decides, not the language.
    {"zh_TW.UTF-8", "Quillmarsh", "    Warm Tips:\n\n    1. ", "please manually reopen the software.", 16},
    {"bo_CN.UTF-8", "固件升级", "    温馨提示:\n\n    1.在固件", "      请手动打开软件。", 13},
};

INSTANTIATE_TEST_SUITE_P(InEachCountry, ReducedInterfaceTest, testing::ValuesIn(reducedCases),
                         [](const testing::TestParamInfo<ReducedCase> &each) {
                             return std::string(each.param.locale, 5);
                         });

} // namespace
