#include "cli/output/DeviceStates.h"

#include "checks/Texts.h"
#include "devices/UsbId.h"

using State = DeviceInfo::State;

QLatin1String DeviceStates::nameOf(State state)
{
    switch (state) {
    case State::Ready:
        return QLatin1String("ready");
    case State::InBootloader:
        return QLatin1String("bootloader");
    case State::NeedsIapProgrammer:
        return QLatin1String("iap");
    case State::NoPermission:
        return QLatin1String("no-permission");
    case State::SwitchedOff:
        return QLatin1String("switched-off");
    }
    return {};
}

QString DeviceStates::describe(State state)
{
    switch (state) {
    case State::Ready:
        return Texts::pick("ready", "就绪");
    case State::InBootloader:
        return Texts::pick("in its bootloader: name its model with --model",
                           "处于 bootloader 模式:请用 --model 指定型号");
    case State::NeedsIapProgrammer:
        return Texts::pick("ready (IAP programmer)", "就绪(IAP 编程器)");
    case State::NoPermission:
        return Texts::pick("you may not open it", "没有打开该设备的权限");
    case State::SwitchedOff:
        return Texts::pick("switched off in the control list", "已在控制列表中关闭");
    }
    return {};
}

QString DeviceStates::describe(const DeviceInfo &device)
{
    const QString gone = device.connected ? QString() : Texts::pick("disconnected", "已断开");
    return QStringLiteral("%1  %2:%3  %4  %5")
        .arg(device.position.isEmpty() ? QStringLiteral("-") : device.position, UsbId::text(device.vendorId),
             UsbId::text(device.productId), device.model.isEmpty() ? QStringLiteral("?") : device.model,
             gone.isEmpty() ? describe(device.state) : gone);
}
