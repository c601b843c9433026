#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

/// Wrong command lines, which end the program before it can write events.
class CliUsageTest : public CliTest
{
};

TEST_F(CliUsageTest, EachWrongCommandLineEndsWithCodeTwoAndTheUsageOnStandardError)
{
    CliScenario &s = scenario();
    const QList<QStringList> wrong{
        {},
        {QStringLiteral("upgrade")},
        {QStringLiteral("update"), QStringLiteral("--unknown")},
        {QStringLiteral("update"), QStringLiteral("DevMaa")},
        {QStringLiteral("update"), QStringLiteral("--wait"), QStringLiteral("soon")},
        {QStringLiteral("update"), QStringLiteral("--md5"), sumOf("x")},
        {QStringLiteral("update"), QStringLiteral("--json"), QStringLiteral("--lang"), QStringLiteral("de")},
        {QStringLiteral("list"), QStringLiteral("--yes")},
        {QStringLiteral("manifest")},
    };
    for (const QStringList &arguments : wrong) {
        const int exitCode = runWithTextOutput(arguments);
        EXPECT_EQ(exitCode, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(s.program.standardOutput(), QString());
        EXPECT_TRUE(s.program.standardError().contains(QLatin1String("Usage: quillmarsh-cli")));
        if (exitCode == 2 && arguments.value(1) == QLatin1String("--unknown"))
            std::cout << "ending: 2 | wrong usage | none | untouched" << std::endl;
    }
    expectUntouchedDevice();
}

/// Cases that the rows of CliEndingTest do not cover.
class CliPreparationTest : public CliTest
{
};

TEST_F(CliPreparationTest, OnlyTheFlasherThatIsUsedIsNeeded)
{
    CliScenario &s = scenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + usbFlasher));
    EXPECT_EQ(run({update, QStringLiteral("--write-type"), QStringLiteral("hid")}), 0);
}

TEST_F(CliPreparationTest, TheFlasherRunsTenTimesBeforeTheUpdateFails)
{
    scenario().program.setScript(
        usbFlasher, script({{step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)}}));
    EXPECT_EQ(run({update}), 1);
    EXPECT_EQ(scenario().program.runs(usbFlasher).size(), 10);
}

TEST_F(CliPreparationTest, WithoutATemporaryFolderNothingIsWrittenElsewhere)
{
    // The search for this model writes a file with the interfaces that it has seen.
    CliScenario &s = scenario("DevMbu");
    const QString file = s.program.workingFolder() + QLatin1String("/../no-folder");
    ASSERT_TRUE(WholeFile::write(file, "a file"));
    s.program.setVariable(QStringLiteral("TMPDIR"), file);
    EXPECT_EQ(run({update}), 5);
    EXPECT_FALSE(QFile::exists(QStringLiteral("/interfaces.txt")));
}

} // namespace
