#include "cli/commands/ListCommand.h"

#include "checks/DeviceSearch.h"
#include "checks/Texts.h"
#include "cli/commands/CommandContext.h"

ExitCode runListCommand(CommandContext &context)
{
    constexpr int intervalMs = 500;
    DeviceSearch search(context.usb(), context.tools.controlList);
    QVector<DeviceInfo> known = search.find();
    for (const DeviceInfo &device : qAsConst(known))
        context.sink.device(device);
    if (known.isEmpty() && !context.options.json)
        context.sink.message(
            Texts::pick("No device that this program knows is connected.", "没有连接已知的设备。"));
    while (context.options.watch && CommandContext::waitMs(intervalMs)) {
        const QVector<DeviceInfo> now = search.find();
        for (const DeviceInfo &change : changesBetween(known, now))
            context.sink.device(change);
        known = now;
    }
    return ExitCode::Done;
}
