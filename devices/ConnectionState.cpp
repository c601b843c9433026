#include "devices/ConnectionState.h"

ConnectionStatus statusOf(ConnectionState state)
{
    switch (state) {
    case ConnectionState::OneBootloader:
        return {{"FindBootloader", "发现bootloader设备"}, "color: red;"};
    case ConnectionState::SeveralBootloaders:
        return {{"Bootloader>1", "bootloader设备过多"}, "color: red;"};
    case ConnectionState::DeviceStartsItself:
    case ConnectionState::Device:
        return {{"Device Detected", "发现设备"}, "color: green;"};
    case ConnectionState::IapDevice:
        return {{"IAP Device Detected", "发现IAP设备"}, "color: green;"};
    case ConnectionState::Nothing:
        break;
    }
    return {{"Device not detected", "未发现设备"}, "color: blue;"};
}

ConnectionState stateOf(const ChosenDevice &device, const LaunchOptions &options, bool inList)
{
    if (device.name.isEmpty())
        return ConnectionState::Nothing;
    if (options.isAutomatic())
        return ConnectionState::DeviceStartsItself;
    if (!inList)
        return ConnectionState::Nothing;
    return device.iapFlag == 0 ? ConnectionState::Device : ConnectionState::IapDevice;
}
