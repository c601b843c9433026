#include "checks/DeviceFindings.h"

#include "checks/Texts.h"
#include "devices/ControlledDeviceList.h"
#include "devices/models/ModelTable.h"
#include "support/log/QuietReporter.h"

#include <algorithm>

using State = DeviceInfo::State;

namespace {

/// Keeps the last line that was logged.
class LastLine : public QuietReporter
{
public:
    void log(const QString &line) override { text = line; }
    QString text;
};

const ModelRow *rowOf(const ModelTable &table, const QString &model)
{
    const auto row = std::find_if(table.rows().begin(), table.rows().end(),
                                  [&model](const ModelRow &each) { return each.name == model; });
    return row == table.rows().end() ? nullptr : &*row;
}

int countSwitchedOn(const QByteArray &contents)
{
    const ModelTable table;
    QuietReporter quiet;
    return static_cast<int>(std::count_if(table.rows().begin(), table.rows().end(), [&](const ModelRow &row) {
        return ControlledDeviceList::parseDevices(contents, row.name, quiet);
    }));
}

} // namespace

Finding DeviceFindings::controlList(const QString &path, const std::optional<QByteArray> &contents,
                                    const QString &model)
{
    const QString what = QStringLiteral("control-list");
    const QString remedy = Texts::pick("Copy the maker's ControlDevList.json there.",
                                       "请将厂商的 ControlDevList.json 复制到该处。");
    if (!contents)
        return Findings::problem(what, Texts::pick("%1 cannot be read.", "无法读取 %1。").arg(path), remedy);
    LastLine reporter;
    const bool isOn = ControlledDeviceList::parseDevices(*contents, model, reporter);
    if (reporter.text == QLatin1String("Invalid JSON format!") ||
        reporter.text == QLatin1String("No devices found in the JSON data.!"))
        return Findings::problem(what, path + QLatin1String(": ") + reporter.text, remedy);
    if (!model.isEmpty() && !isOn)
        return Findings::problem(what,
                                 Texts::pick("%1 does not switch %2 on.", "%1 未启用 %2。").arg(path, model),
                                 Texts::pick("Set its \"is_on\" to true.", "请将其 \"is_on\" 设为 true。"));
    const int count = countSwitchedOn(*contents);
    if (count == 0)
        return Findings::problem(
            what, Texts::pick("%1 switches no model on.", "%1 未启用任何型号。").arg(path),
            Texts::pick("Set \"is_on\" of your models to true.", "请将所用型号的 \"is_on\" 设为 true。"));
    return Findings::ok(
        what, Texts::pick("%1 switches %2 models on.", "%1 启用了 %2 个型号。").arg(path).arg(count));
}

Finding DeviceFindings::tool(const Tool &tool, bool isNeeded)
{
    if (tool.exists && tool.executable)
        return Findings::ok(tool.what, tool.path);
    const Finding::Verdict verdict = isNeeded ? Finding::Verdict::Problem : Finding::Verdict::Warning;
    if (tool.exists)
        return {tool.what, verdict, Texts::pick("%1 may not be run.", "%1 不可执行。").arg(tool.path),
                Texts::pick("Make it executable.", "请赋予可执行权限。")};
    return {tool.what, verdict, Texts::pick("%1 is missing.", "缺少 %1。").arg(tool.path),
            Texts::pick("Copy the maker's tool there.", "请将厂商的工具复制到该处。")};
}

QString DeviceFindings::neededTool(const QString &model, const QStringList &writeTypes)
{
    const ModelTable table;
    const ModelRow *row = rowOf(table, model);
    if (row && row->iapFlag != 0)
        return QStringLiteral("iap-programmer");
    return writeTypes.value(0) == QLatin1String("HID") ? QStringLiteral("hid-flasher")
                                                       : QStringLiteral("usb-flasher");
}

bool DeviceFindings::isKnownModel(const QString &model)
{
    const ModelTable table;
    return rowOf(table, model) != nullptr;
}

QString DeviceFindings::modelToCheck(const QString &requestedModel, const QVector<DeviceInfo> &devices)
{
    if (!requestedModel.isEmpty())
        return requestedModel;
    QStringList models;
    for (const DeviceInfo &device : devices)
        models.append(device.model);
    models.removeDuplicates();
    return models.size() == 1 ? models.first() : QString();
}

Finding DeviceFindings::devices(const QVector<DeviceInfo> &devices, const QString &requestedModel)
{
    const QString what = QStringLiteral("device");
    if (!requestedModel.isEmpty() && !isKnownModel(requestedModel))
        return Findings::problem(
            what, Texts::pick("No model is called %1.", "没有名为 %1 的型号。").arg(requestedModel),
            Texts::pick("Check the name; capitals count.", "请检查名称,区分大小写。"));
    QStringList models;
    int bootloaders = 0;
    for (const DeviceInfo &device : devices) {
        if (device.state == State::InBootloader)
            ++bootloaders;
        else if (requestedModel.isEmpty() || device.model == requestedModel)
            models.append(device.model);
    }
    if (bootloaders > 1)
        return Findings::problem(
            what,
            Texts::pick("More than one device waits in its bootloader.", "有多个设备停留在 bootloader。"),
            Texts::pick("Leave one connected.", "请只连接一个。"));
    if (bootloaders == 1 && requestedModel.isEmpty())
        return Findings::warning(what,
                                 Texts::pick("A device waits in its bootloader.", "设备停留在 bootloader。"),
                                 Texts::pick("Name its model with --model.", "请用 --model 指定型号。"));
    if (bootloaders == 1)
        return Findings::ok(what,
                            Texts::pick("A device waits in its bootloader.", "设备停留在 bootloader。"));
    if (models.isEmpty())
        return Findings::warning(
            what,
            requestedModel.isEmpty()
                ? Texts::pick("No known device is connected.", "没有连接已知的设备。")
                : Texts::pick("No %1 is connected.", "没有连接 %1。").arg(requestedModel),
            Texts::pick("Connect the device.", "请连接设备。"));
    return Findings::ok(what,
                        Texts::pick("%1 connected.", "已连接 %1。").arg(models.join(QLatin1String(", "))));
}

Finding DeviceFindings::deviceAccess(const std::optional<QString> &refusedFile)
{
    const QString what = QStringLiteral("device-access");
    if (!refusedFile)
        return Findings::ok(what, Texts::pick("Only an update shows whether you may open a device.",
                                              "是否有权打开设备只有在升级时才能得知。"));
    if (refusedFile->isEmpty())
        return Findings::ok(what, Texts::pick("You may open the connected devices.", "没有设备被拒绝访问。"));
    return Findings::problem(
        what, Texts::pick("You may not open %1.", "没有打开 %1 的权限。").arg(*refusedFile),
        Texts::pick("Install the udev rules 60-quillmarsh.rules in /etc/udev/rules.d and connect the device "
                    "again.",
                    "请将 udev 规则 60-quillmarsh.rules 安装到 /etc/udev/rules.d 并重新连接设备。"));
}
