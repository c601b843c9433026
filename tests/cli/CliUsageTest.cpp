#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

/// Command lines that are wrong: there is nobody to tell events to yet.
class CliUsageTest : public CliTest
{
};

TEST_F(CliUsageTest, EachWrongCommandLineEndsWithTwoAndTheUsageOnStandardError)
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
        const int exitCode = runForPerson(arguments);
        EXPECT_EQ(exitCode, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(s.program.standardOutput(), QString());
        EXPECT_TRUE(s.program.standardError().contains(QLatin1String("Usage: quillmarsh-cli")));
        if (exitCode == 2 && arguments.value(1) == QLatin1String("--unknown"))
            std::cout << "ending: 2 | wrong usage | none | untouched" << std::endl;
    }
    expectUntouchedDevice();
}

/// What the rows of CliEndingTest say nothing of.
class CliPreparationTest : public CliTest
{
};

TEST_F(CliPreparationTest, OnlyTheFlasherThatIsUsedIsNeeded)
{
    CliScenario &s = scenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + usbFlasher));
    EXPECT_EQ(run({update, QStringLiteral("--write-type"), QStringLiteral("hid")}), 0);
}

TEST_F(CliPreparationTest, TheFlasherIsTriedTenTimes)
{
    scenario().program.setScript(
        usbFlasher, script({{step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)}}));
    EXPECT_EQ(run({update}), 1);
    EXPECT_EQ(scenario().program.runs(usbFlasher).size(), 10);
}

TEST_F(CliPreparationTest, WithoutATemporaryFolderNothingIsWrittenElsewhere)
{
    // A model whose interfaces are written down while it is looked for.
    CliScenario &s = scenario("DevMbu");
    const QString file = s.program.workingFolder() + QLatin1String("/../no-folder");
    ASSERT_TRUE(WholeFile::write(file, "a file"));
    s.program.setVariable(QStringLiteral("TMPDIR"), file);
    EXPECT_EQ(run({update}), 5);
    EXPECT_FALSE(QFile::exists(QStringLiteral("/interfaces.txt")));
}

} // namespace
