#include "harness/UpdateScenario.h"

#include <gtest/gtest.h>

namespace {

struct Language
{
    const char *name;
    const char *locale;
    const char *said;
};

void PrintTo(const Language &language, std::ostream *stream)
{
    *stream << language.name;
}

class UnwritableReportTest : public testing::TestWithParam<Language>
{
};

TEST_P(UnwritableReportTest, TheWindowNamesTheFileThatCannotBeWritten)
{
    UpdateScenario s(QStringLiteral("DevMaa"));
    s.withServer = false;
    s.program.setLocale(QLatin1String(GetParam().locale));
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    const QJsonObject right{{QStringLiteral("button"), QStringLiteral("right")}};
    const QString menu = QStringLiteral("logMenu");
    const QString dialog = QStringLiteral("reportDialog");
    const QString nameEdit = QStringLiteral("fileNameEdit");
    ASSERT_TRUE(s.probe.check(QStringLiteral("logBox")));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("logTextView"), true));
    ASSERT_TRUE(s.probe.click(QStringLiteral("logTextView"), right));
    ASSERT_TRUE(s.probe.waitForWindow(menu));
    ASSERT_TRUE(s.probe.type(menu, QString(), Qt::Key_Up));
    ASSERT_TRUE(s.probe.type(menu, QString(), Qt::Key_Return));
    ASSERT_TRUE(s.probe.waitForWindow(dialog)) << s.probe.errorText().toStdString();
    // Not even an administrator can make a file in this folder.
    ASSERT_TRUE(s.probe.setText(nameEdit, QStringLiteral("/proc/report.json")));
    ASSERT_TRUE(s.probe.type(nameEdit, QString(), Qt::Key_Return));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("reportBox"))) << s.probe.errorText().toStdString();
    const QString said = s.probe.window(QStringLiteral("reportBox")).value(QLatin1String("text")).toString();
    EXPECT_TRUE(said.contains(QString::fromUtf8(GetParam().said))) << said.toStdString();
    EXPECT_EQ(s.closeWindow(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    InEachLanguage, UnwritableReportTest,
    testing::Values(Language{"English", "en_US.UTF-8", "The report cannot be written to /proc/report.json: "},
                    Language{"Chinese", "zh_CN.UTF-8", "无法将报告写入 /proc/report.json:"}),
    [](const auto &language) { return language.param.name; });

} // namespace
