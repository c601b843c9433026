#include "cli/output/UpdateTexts.h"

#include "checks/Texts.h"

#include <cmath>

namespace {

constexpr double bytesPerMegabyte = 1024.0 * 1024.0;

QString megabytes(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) / bytesPerMegabyte, 'f', 1);
}

QString duration(qint64 seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString amount(const UpdateProgress &progress, qint64 elapsedMs)
{
    if (!progress.bytes || !progress.total)
        return {};
    QString text =
        QStringLiteral("  %1 / %2 MiB").arg(megabytes(*progress.bytes), megabytes(*progress.total));
    if (elapsedMs < 1000 || *progress.bytes <= 0)
        return text;
    const double perSecond = static_cast<double>(*progress.bytes) * 1000.0 / static_cast<double>(elapsedMs);
    const double left = static_cast<double>(*progress.total - *progress.bytes) / perSecond;
    text += QStringLiteral("  %1 MiB/s").arg(perSecond / bytesPerMegabyte, 0, 'f', 1);
    return text + QStringLiteral("  ") + duration(static_cast<qint64>(std::ceil(left)));
}

/// What to do after an update that did not succeed.
QString remedy(const UpdateSummary &summary)
{
    switch (summary.exitCode) {
    case ExitCode::FirmwareUnusable:
        return Texts::pick("The device was not touched. Try again later, or ask the firmware's maker.",
                           "设备未被改动。请稍后重试,或联系固件发布者。");
    case ExitCode::NotPrepared:
        return Texts::pick("The device was not touched. \"quillmarsh-cli check\" says what is missing.",
                           "设备未被改动。运行 \"quillmarsh-cli check\" 查看缺少什么。");
    case ExitCode::Interrupted:
        return Texts::pick("The device was not touched.", "设备未被改动。");
    case ExitCode::UpdateFailed:
        return Texts::pick("Keep the device connected and update it again. If it waits in its bootloader, "
                           "name its model with --model.",
                           "请保持设备连接并重新升级。如果设备停留在 bootloader,请用 --model 指定型号。");
    default:
        return {};
    }
}

QString reasonText(UpdateReason reason)
{
    switch (reason) {
    case UpdateReason::None:
        return {};
    case UpdateReason::NoDevice:
        return Texts::pick("no such device is connected", "没有连接符合条件的设备");
    case UpdateReason::AnotherCopy:
        return Texts::pick("another copy of this program is updating a device",
                           "本程序的另一个副本正在升级设备");
    case UpdateReason::ToolMissing:
        return Texts::pick("a tool is missing or may not be run", "缺少工具,或工具无法运行");
    case UpdateReason::NoAccess:
        return Texts::pick("you may not open the device", "没有打开该设备的权限");
    case UpdateReason::FolderUnusable:
        return Texts::pick("the temporary folder cannot be used", "临时文件夹无法使用");
    case UpdateReason::NoModelChosen:
        return Texts::pick("no model was named", "没有指定型号");
    case UpdateReason::ImageUnreadable:
        return Texts::pick("the image file cannot be read", "无法读取镜像文件");
    case UpdateReason::AddressNotFound:
        return Texts::pick("the server has no firmware for this model", "服务器上没有该型号的固件");
    case UpdateReason::DownloadFailed:
        return Texts::pick("the firmware did not arrive completely", "固件没有完整下载");
    case UpdateReason::ChecksumMismatch:
        return Texts::pick("the firmware is not what was promised: its checksum is wrong",
                           "固件与发布内容不符:校验和错误");
    case UpdateReason::SignatureRefused:
        return Texts::pick("the firmware has no valid signature of its maker for this model",
                           "固件没有发布者针对该型号的有效签名");
    case UpdateReason::BootloaderNotEntered:
        return Texts::pick("the device did not enter its bootloader", "设备没有进入 bootloader");
    case UpdateReason::UnknownWriteType:
        return Texts::pick("the write type is unknown", "未知的写入方式");
    case UpdateReason::ToolNotStarted:
        return Texts::pick("a tool could not be started", "工具无法启动");
    case UpdateReason::DeviceNotReachable:
        return Texts::pick("the tool did not find the device", "工具没有找到设备");
    case UpdateReason::WritingFailed:
        return Texts::pick("the tool ended without success", "工具没有成功完成");
    case UpdateReason::ImageRefused:
        return Texts::pick("the programmer takes no other files than .bin", "编程器只接受 .bin 文件");
    case UpdateReason::NoPanel:
        return Texts::pick("the programmer is not ready", "编程器未就绪");
    case UpdateReason::ProgramClosed:
        return Texts::pick("it was interrupted", "已被中断");
    }
    return {};
}

} // namespace

QString UpdateTexts::stageName(UpdateStage stage)
{
    switch (stage) {
    case UpdateStage::Fetching:
        return Texts::pick("Fetching the firmware", "正在获取固件");
    case UpdateStage::EnteringBootloader:
        return Texts::pick("Entering the bootloader", "正在进入 bootloader");
    case UpdateStage::Flashing:
    case UpdateStage::Programming:
        return Texts::pick("Writing the device: do not disconnect it", "正在写入设备:请勿断开");
    case UpdateStage::Resetting:
        return Texts::pick("Restarting the device", "正在重启设备");
    case UpdateStage::AskingProgrammer:
        return Texts::pick("Asking the programmer", "正在询问编程器");
    case UpdateStage::Idle:
    case UpdateStage::AskingForModel:
    case UpdateStage::Blocked:
    case UpdateStage::ProgramClosed:
        break;
    }
    return {};
}

QString UpdateTexts::progressLine(UpdateStage stage, const std::optional<UpdateProgress> &progress,
                                  qint64 elapsedMs, int width)
{
    QString line = stageName(stage);
    if (progress)
        line += QStringLiteral("  %1 %").arg(progress->percent) + amount(*progress, elapsedMs);
    return line.left(width);
}

QString UpdateTexts::ending(const UpdateSummary &summary)
{
    const QString model = summary.model.isEmpty() ? QStringLiteral("?") : summary.model;
    if (summary.result.outcome == UpdateResult::Outcome::Succeeded)
        return Texts::pick("%1 was updated.", "%1 已升级。").arg(model);
    const QString reason = reasonText(summary.result.reason);
    const QString first = summary.result.outcome == UpdateResult::Outcome::Cancelled
                              ? Texts::pick("The update was cancelled: %1.", "升级已取消:%1。")
                              : Texts::pick("The update failed: %1.", "升级失败:%1。");
    return (first.arg(reason) + QLatin1Char(' ') + remedy(summary)).trimmed();
}
