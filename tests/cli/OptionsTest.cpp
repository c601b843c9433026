#include "cli/commands/Options.h"

#include "tests/common/TextList.h"

#include <gtest/gtest.h>

namespace {

using Command = Options::Command;

ParsedCommandLine parse(const QStringList &arguments, Texts::Language language = Texts::Language::English)
{
    return parseOptions(arguments, language, QStringLiteral("1.2.3"));
}

/// Returns the options of a valid command line.
Options optionsOf(const QStringList &arguments)
{
    const ParsedCommandLine parsed = parse(arguments);
    EXPECT_TRUE(parsed.options) << arguments.join(QLatin1Char(' ')).toStdString() << ": "
                                << parsed.text.toStdString();
    return parsed.options.value_or(Options());
}

TEST(OptionsTest, EachCommandIsKnown)
{
    EXPECT_EQ(optionsOf(list({"list"})).command, Command::List);
    EXPECT_EQ(optionsOf(list({"update"})).command, Command::Update);
    EXPECT_EQ(optionsOf(list({"check"})).command, Command::Check);
    EXPECT_EQ(optionsOf(list({"manifest", "verify"})).command, Command::VerifyManifest);
    EXPECT_EQ(optionsOf(list({"report"})).command, Command::Report);
}

TEST(OptionsTest, OptionsThatAreNotGivenAreOff)
{
    const Options options = optionsOf(list({"update"}));
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.verbose);
    EXPECT_FALSE(options.noReset);
    EXPECT_FALSE(options.requireSignature);
    EXPECT_FALSE(options.repeat);
    EXPECT_FALSE(options.yes);
    EXPECT_EQ(options.waitSeconds, 0);
    EXPECT_EQ(options.logFile + options.model + options.imageFile + options.imageSum + options.writeType,
              QString());
    EXPECT_FALSE(optionsOf(list({"list"})).watch);
    EXPECT_FALSE(optionsOf(list({"manifest", "verify"})).download);
}

TEST(OptionsTest, EachOptionIsRead)
{
    const Options options =
        optionsOf(list({"update", "--json", "--verbose", "--log", "a log.txt", "--model", "DevMaa", "--file",
                        "an image.img", "--md5", "0123456789ABCDEF0123456789abcdef", "--write-type", "hid",
                        "--no-reset", "--wait", "90", "--repeat", "--yes", "--require-signature"}));
    EXPECT_TRUE(options.requireSignature);
    EXPECT_TRUE(options.json);
    EXPECT_TRUE(options.verbose);
    EXPECT_EQ(options.logFile, QStringLiteral("a log.txt"));
    EXPECT_EQ(options.model, QStringLiteral("DevMaa"));
    EXPECT_EQ(options.imageFile, QStringLiteral("an image.img"));
    EXPECT_EQ(options.imageSum, QStringLiteral("0123456789abcdef0123456789abcdef"));
    EXPECT_EQ(options.writeType, QStringLiteral("HID"));
    EXPECT_TRUE(options.noReset);
    EXPECT_EQ(options.waitSeconds, 90);
    EXPECT_TRUE(options.repeat);
    EXPECT_TRUE(options.yes);
    EXPECT_TRUE(optionsOf(list({"list", "--watch"})).watch);
    const Options verify = optionsOf(list({"manifest", "verify", "--download", "m.json"}));
    EXPECT_TRUE(verify.download);
    EXPECT_EQ(verify.manifest, QStringLiteral("m.json"));
}

TEST(OptionsTest, TheLanguageIsThatOfTheSystemUnlessOneIsGiven)
{
    using Texts::Language;
    EXPECT_EQ(parse(list({"list"}), Language::Chinese).options->language, Language::Chinese);
    EXPECT_EQ(parse(list({"list"}), Language::English).options->language, Language::English);
    EXPECT_EQ(parse(list({"list", "--lang", "en"}), Language::Chinese).options->language, Language::English);
    EXPECT_EQ(parse(list({"list", "--lang", "zh"}), Language::English).options->language, Language::Chinese);
}

struct WrongLine
{
    const char *name;
    QStringList arguments;
    /// The beginning of the problem's text.
    const char *problem;
};

void PrintTo(const WrongLine &line, std::ostream *out)
{
    *out << line.name;
}

const char *const sum = "0123456789abcdef0123456789abcdef";

const WrongLine wrongLines[] = {
    {"Nothing", {}, "A command is needed."},
    {"UnknownCommand", list({"upgrade"}), "Unknown command: upgrade"},
    {"OptionBeforeCommand", list({"--json", "list"}), "Unknown command: --json"},
    {"ManifestAlone", list({"manifest"}), "\"manifest\" needs \"verify\"."},
    {"UnknownManifestCommand", list({"manifest", "show"}), "\"manifest\" needs \"verify\"."},
    {"UnknownOption", list({"update", "--fast"}), "Unknown option 'fast'."},
    {"OptionOfAnotherCommand", list({"list", "--yes"}), "Unknown option 'yes'."},
    {"Argument", list({"update", "DevMaa"}), "Unexpected argument: DevMaa"},
    {"SecondManifest", list({"manifest", "verify", "a", "b"}), "Unexpected argument: b"},
    {"NoValue", list({"update", "--model"}), "Missing value after '--model'."},
    {"EmptyModel", list({"update", "--model", ""}), "--file and --model need a name."},
    {"EmptyFile", list({"update", "--file", ""}), "--file and --model need a name."},
    {"EmptyLog", list({"update", "--log", ""}), "--log needs a name."},
    {"WaitForWords", list({"update", "--wait", "soon"}), "--wait needs a number of seconds."},
    {"WaitLessThanNothing", list({"update", "--wait", "-1"}), "--wait needs a number of seconds."},
    {"WaitForAFraction", list({"update", "--wait", "1.5"}), "--wait needs a number of seconds."},
    {"UnknownWriteType", list({"update", "--write-type", "serial"}), "--write-type is usb or hid."},
    {"EmptyWriteType", list({"update", "--write-type", ""}), "--write-type is usb or hid."},
    {"SumWithoutFile", list({"update", "--md5", sum}), "--md5 goes with --file."},
    {"ShortSum", list({"update", "--file", "a", "--md5", "0123"}), "--md5 needs 32 hexadecimal digits."},
    {"SumOfOtherLetters", list({"update", "--file", "a", "--md5", "0123456789abcdefg123456789abcdef"}),
     "--md5 needs 32 hexadecimal digits."},
    {"UnknownLanguage", list({"list", "--lang", "de"}), "--lang is en or zh."},
    {"ValueOfASwitch", list({"list", "--json=yes"}), "Unexpected value after '--json'."},
};

class WrongCommandLineTest : public testing::TestWithParam<WrongLine>
{
};

TEST_P(WrongCommandLineTest, ShowsTheProblemAndTheUsage)
{
    const ParsedCommandLine parsed = parse(GetParam().arguments);
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exitCode, 2);
    EXPECT_EQ(parsed.text.section(QLatin1Char('\n'), 0, 0), QLatin1String(GetParam().problem));
    EXPECT_TRUE(parsed.text.contains(QLatin1String("\n\nUsage: quillmarsh-cli COMMAND [OPTIONS]\n")));
}

std::string nameOfLine(const testing::TestParamInfo<WrongLine> &line)
{
    return line.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, WrongCommandLineTest, testing::ValuesIn(wrongLines), nameOfLine);

TEST(OptionsTest, HelpAndVersionReturnATextAndExitCodeZero)
{
    const QList<QStringList> asking{list({"--help"}),          list({"--version"}),
                                    list({"list", "--help"}),  list({"update", "--json", "--help"}),
                                    list({"check", "--help"}), list({"manifest", "verify", "--help"})};
    for (const QStringList &arguments : asking) {
        const ParsedCommandLine parsed = parse(arguments);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.exitCode, 0);
        EXPECT_NE(parsed.text, QString()) << arguments.join(QLatin1Char(' ')).toStdString();
    }
    EXPECT_EQ(parse(list({"--version"})).text, QStringLiteral("quillmarsh-cli 1.2.3\n"));
}

TEST(OptionsTest, TheHelpOfACommandNamesTheCommand)
{
    EXPECT_TRUE(
        parse(list({"update", "--help"})).text.startsWith(QLatin1String("Usage: quillmarsh-cli update ")));
    EXPECT_TRUE(parse(list({"manifest", "verify", "--help"}))
                    .text.startsWith(QLatin1String("Usage: quillmarsh-cli manifest verify ")));
}

TEST(OptionsTest, AReportTakesOneFileAtMost)
{
    EXPECT_EQ(optionsOf(list({"report"})).reportFile, QString());
    EXPECT_EQ(optionsOf(list({"report", "a file.json"})).reportFile, QStringLiteral("a file.json"));
    EXPECT_EQ(optionsOf(list({"report", "-"})).reportFile, QStringLiteral("-"));
    EXPECT_EQ(optionsOf(list({"report", "--log", "x.txt"})).logFile, QStringLiteral("x.txt"));
    EXPECT_EQ(parse(list({"report", "a", "b"})).exitCode, 2);
    EXPECT_EQ(parse(list({"report", "-", "--json"})).exitCode, 2);
    EXPECT_TRUE(parse(list({"report", "--help"}))
                    .text.startsWith(QLatin1String("Usage: quillmarsh-cli report [OPTIONS] [FILE]\n")));
}

} // namespace
