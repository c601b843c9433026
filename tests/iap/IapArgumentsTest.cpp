#include "iap/IapArguments.h"

#include "tests/common/TextList.h"

#include <gtest/gtest.h>

namespace {

IapRun usbRun()
{
    IapRun run;
    run.portType = QStringLiteral("USB");
    run.vendorId = 0xF113;
    run.productId = 0xA05A;
    run.updateFile = QStringLiteral("/tmp/a b/dev.bin");
    return run;
}

TEST(IapArgumentsTest, IdsAreSignedHexadecimalInLowerCaseWithoutPrefixOrPadding)
{
    EXPECT_EQ(IapArguments::signedHex(0), QStringLiteral("0"));
    EXPECT_EQ(IapArguments::signedHex(0xAB), QStringLiteral("ab"));
    EXPECT_EQ(IapArguments::signedHex(0xF113), QStringLiteral("f113"));
    EXPECT_EQ(IapArguments::signedHex(0x7FFFFFFF), QStringLiteral("7fffffff"));
    EXPECT_EQ(IapArguments::signedHex(0x80000000), QStringLiteral("-80000000"));
    EXPECT_EQ(IapArguments::signedHex(0xFFFFFFFE), QStringLiteral("-2"));
}

TEST(IapArgumentsTest, BeforeAnyIapDeviceHasBeenChosenTheIdsAreSentAsMinusOne)
{
    EXPECT_EQ(IapArguments::getData(0xFFFFFFFF, 0xFFFFFFFF), list({"GetData", "-1", "-1"}));
}

TEST(IapArgumentsTest, TheRequestForPortsNamesTheVendorFirst)
{
    EXPECT_EQ(IapArguments::getData(0xF113, 0xA05A), list({"GetData", "f113", "a05a"}));
}

TEST(IapArgumentsTest, AStartHasElevenArgumentsInTheirOrder)
{
    EXPECT_EQ(
        IapArguments::start(
            usbRun(), {QStringLiteral("10"), 2, QStringLiteral("9600"), QStringLiteral("08004000"), true}),
        list({"Start", "1", "10", "f113", "a05a", "2", "2", "9600", "08004000", "true", "/tmp/a b/dev.bin"}));
}

TEST(IapArgumentsTest, EmptyFieldsStayArguments)
{
    EXPECT_EQ(IapArguments::start(usbRun(), {}),
              list({"Start", "1", "", "f113", "a05a", "-1", "-1", "", "", "false", "/tmp/a b/dev.bin"}));
}

TEST(IapArgumentsTest, ArgumentsSixAndSevenAreAlwaysEqual)
{
    for (const int index : {-1, 0, 1, 17}) {
        const QStringList arguments =
            IapArguments::start(usbRun(), {QString(), index, QString(), QString(), false});
        EXPECT_EQ(arguments.at(5), QString::number(index));
        EXPECT_EQ(arguments.at(6), arguments.at(5));
    }
}

TEST(IapArgumentsTest, TheAddressesAreTheWholeFieldsAndNotWhatIsSelectedInThem)
{
    IapRun run = usbRun();
    run.address = QStringLiteral("selected");
    run.appStartAddress = QStringLiteral("selected");
    run.baudRate = QStringLiteral("from the record");
    const QStringList arguments = IapArguments::start(
        run, {QStringLiteral("whole"), 0, QStringLiteral("from the field"), QStringLiteral("whole"), false});
    EXPECT_EQ(arguments.at(2), QStringLiteral("whole"));
    EXPECT_EQ(arguments.at(7), QStringLiteral("from the field"));
    EXPECT_EQ(arguments.at(8), QStringLiteral("whole"));
}

} // namespace
