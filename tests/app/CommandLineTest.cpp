#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

LaunchOptions parse(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "quillmarsh");
    return parseArguments(static_cast<int>(arguments.size()), arguments.data());
}

void expectNormal(const LaunchOptions &options)
{
    EXPECT_FALSE(options.isZN58Mode);
    EXPECT_FALSE(options.isTessilonixMode);
    EXPECT_FALSE(options.isAutomatic());
    EXPECT_TRUE(options.wantedModelName.isEmpty());
}

TEST(CommandLineTest, NoArgumentIsNormalMode)
{
    expectNormal(parse({}));
    expectNormal(parseArguments(0, nullptr));
}

TEST(CommandLineTest, AnUnknownFirstArgumentIsNormalModeWhateverFollows)
{
    expectNormal(parse({"--version"}));
    expectNormal(parse({"x", "ZN58UpDate"}));
}

TEST(CommandLineTest, AnotherLetterCaseIsNormalMode)
{
    expectNormal(parse({"zn58update"}));
    expectNormal(parse({"tessilonixupdate", "DevMaa"}));
    expectNormal(parse({"ZN58UPDATE"}));
}

TEST(CommandLineTest, BlanksAroundTheModeMakeItUnknown)
{
    expectNormal(parse({" ZN58UpDate"}));
    expectNormal(parse({"ZN58UpDate "}));
}

TEST(CommandLineTest, Zn58ModeIgnoresFurtherArguments)
{
    const LaunchOptions options = parse({"ZN58UpDate", "TessilonixUpDate", "DevMaa"});
    EXPECT_TRUE(options.isZN58Mode);
    EXPECT_FALSE(options.isTessilonixMode);
    EXPECT_TRUE(options.wantedModelName.isEmpty());
}

TEST(CommandLineTest, TessilonixModeTakesTheModelNameAndIgnoresTheRest)
{
    const LaunchOptions options = parse({"TessilonixUpDate", "DevMaa", "DevMac"});
    EXPECT_TRUE(options.isTessilonixMode);
    EXPECT_FALSE(options.isZN58Mode);
    EXPECT_EQ(options.wantedModelName, QStringLiteral("DevMaa"));
}

TEST(CommandLineTest, TheModelNameIsNotChanged)
{
    EXPECT_EQ(parse({"TessilonixUpDate", " 屏 幕 "}).wantedModelName, QStringLiteral(" 屏 幕 "));
    const std::string longName(10000, 'x');
    EXPECT_EQ(parse({"TessilonixUpDate", longName.c_str()}).wantedModelName.size(), 10000);
}

TEST(CommandLineTest, TessilonixModeWithoutAModelNameHasNone)
{
    EXPECT_TRUE(parse({"TessilonixUpDate"}).wantedModelName.isEmpty());
    EXPECT_TRUE(parse({"TessilonixUpDate"}).isTessilonixMode);
    EXPECT_TRUE(parse({"TessilonixUpDate", ""}).wantedModelName.isEmpty());
}

} // namespace
