#include "devices/ConnectionState.h"

#include "tests/devices/DeviceTestValues.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace {

struct Case
{
    const char *what;
    LaunchOptions options;
    const char *name;
    bool inList;
    int iapFlag;
    ConnectionState expected;
};

TEST(ConnectionStateTest, TheFirstCaseThatAppliesIsTaken)
{
    const LaunchOptions normal;
    const Case cases[] = {
        {"a", zn58Mode(), "ZN58", true, 0, ConnectionState::DeviceStartsItself},
        {"a: the list does not count", zn58Mode(), "ZN58", false, 0, ConnectionState::DeviceStartsItself},
        {"a: the IAP flag does not count", zn58Mode(), "ZN58", true, 1, ConnectionState::DeviceStartsItself},
        {"b", tessilonixMode("A"), "A", true, 0, ConnectionState::DeviceStartsItself},
        {"b: the list does not count", tessilonixMode("A"), "A", false, 0,
         ConnectionState::DeviceStartsItself},
        {"b: the IAP flag does not count", tessilonixMode("A"), "A", false, 1,
         ConnectionState::DeviceStartsItself},
        {"c", normal, "A", true, 0, ConnectionState::Device},
        {"d", normal, "A", true, 1, ConnectionState::IapDevice},
        {"e: switched off", normal, "A", false, 0, ConnectionState::Nothing},
        {"e: switched off IAP device", normal, "A", false, 1, ConnectionState::Nothing},
        {"e: no device", normal, "", true, 0, ConnectionState::Nothing},
        {"e: no device, an old IAP flag", normal, "", true, 1, ConnectionState::Nothing},
        {"e: no device in ZN58 mode", zn58Mode(), "", true, 0, ConnectionState::Nothing},
        {"e: no device in Tessilonix mode", tessilonixMode("A"), "", true, 0, ConnectionState::Nothing},
    };
    for (const Case &test : cases) {
        ChosenDevice device;
        device.name = QString::fromUtf8(test.name);
        device.iapFlag = static_cast<quint8>(test.iapFlag);
        EXPECT_EQ(stateOf(device, test.options, test.inList), test.expected) << test.what;
    }
}

void expectShown(ConnectionState state, const char *english, const char *chinese, const char *styleSheet)
{
    const ConnectionStatus status = statusOf(state);
    EXPECT_STREQ(status.text.key, english);
    EXPECT_STREQ(status.text.fallback, chinese);
    EXPECT_STREQ(status.styleSheet, styleSheet);
}

TEST(ConnectionStateTest, EachStateHasItsTextAndColour)
{
    expectShown(ConnectionState::OneBootloader, "FindBootloader", "发现bootloader设备", "color: red;");
    expectShown(ConnectionState::SeveralBootloaders, "Bootloader>1", "bootloader设备过多", "color: red;");
    expectShown(ConnectionState::DeviceStartsItself, "Device Detected", "发现设备", "color: green;");
    expectShown(ConnectionState::Device, "Device Detected", "发现设备", "color: green;");
    expectShown(ConnectionState::IapDevice, "IAP Device Detected", "发现IAP设备", "color: green;");
    expectShown(ConnectionState::Nothing, "Device not detected", "未发现设备", "color: blue;");
}

} // namespace
