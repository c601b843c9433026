#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

const QString chinese = QStringLiteral("固件升级-");

/// quillmarsh-cli on a Windows whose code page is 936.
class ChineseCliTest : public CliTest
{
protected:
    ChineseCliTest() { scenario("DevMaa", chinese).program.setLocale(QStringLiteral("zh_CN.UTF-8")); }

    QString inWork(const char *name)
    {
        return scenario().program.workingFolder() + QLatin1Char('/') + QString::fromUtf8(name);
    }
};

TEST_F(ChineseCliTest, FromAChineseFolderADeviceIsUpdated)
{
    EXPECT_EQ(run({update}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(scenario().burned(), scenario().image());
}

TEST_F(ChineseCliTest, AChineseFileIsWrittenAndAChineseLogFileIsKept)
{
    CliScenario &s = scenario();
    const QByteArray bytes = QByteArray("an image of one's own").repeated(300);
    ASSERT_TRUE(WholeFile::write(inWork("固件 1.img"), bytes));
    m_expectsNoFiles = false;
    EXPECT_EQ(run({update, QStringLiteral("--file"), QStringLiteral("固件 1.img"), QStringLiteral("--md5"),
                   sumOf(bytes), QStringLiteral("--log"), s.program.toProgramPath(inWork("日志.txt"))}),
              0);
    EXPECT_EQ(s.burned(), bytes);
    EXPECT_TRUE(WholeFile::read(inWork("日志.txt")).contains("Burn Image Success"));
    EXPECT_EQ(s.filesLeft(), (QStringList{inWork("日志.txt")}));
}

TEST_F(ChineseCliTest, APersonReadsChineseAndAPipeGetsUtf8)
{
    CliScenario &s = scenario();
    EXPECT_EQ(runWithTextOutput({QStringLiteral("list")}), 0);
    EXPECT_TRUE(s.program.standardOutput().contains(QStringLiteral("DevMaa  就绪")))
        << s.program.standardOutput().toStdString();
    s.devices = {};
    EXPECT_EQ(runWithTextOutput({update}), 0);
    EXPECT_TRUE(s.program.standardOutput().endsWith(QStringLiteral("DevMaa 已升级。\n")))
        << s.program.standardOutput().toStdString();
}

} // namespace
