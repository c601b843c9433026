#include "checks/SystemFindings.h"

#include "checks/Texts.h"
#include "download/DiskNeed.h"

namespace {

/// With less free space, an image of the usual size may not fit.
constexpr qint64 littleSpace = qint64{256} * 1024 * 1024;
constexpr qint64 mebibyte = qint64{1024} * 1024;

} // namespace

Finding SystemFindings::driver(const std::optional<DriverState> &state)
{
    const QString what = QStringLiteral("driver");
    if (!state)
        return Findings::ok(what, Texts::pick("This system needs none.", "本系统不需要驱动。"));
    if (state->running.value_or(false))
        return Findings::ok(what, Texts::pick("libusbK is running.", "libusbK 正在运行。"));
    const QString remedy = Texts::pick("Start the window program once as an administrator: it installs the "
                                       "driver, if you are allowed to.",
                                       "请以管理员身份启动一次窗口程序以安装驱动;是否有权安装届时才能得知。");
    if (!state->missingFiles.isEmpty())
        return Findings::warning(
            what,
            Texts::pick("libusbK does not seem to run, and %1 is missing.", "libusbK 似乎未运行,且缺少 %1。")
                .arg(state->missingFiles.first()),
            Texts::pick("Install the driver package beside the program.", "请将驱动包安装到程序旁。"));
    if (!state->running)
        return Findings::warning(
            what, Texts::pick("Windows does not list its drivers.", "Windows 未列出驱动。"), remedy);
    return Findings::warning(what, Texts::pick("libusbK is not running.", "libusbK 未运行。"), remedy);
}

Finding SystemFindings::temporaryFolder(const QString &path, const QString &reason)
{
    const QString what = QStringLiteral("temporary-folder");
    if (reason.isEmpty())
        return Findings::ok(what, path);
    return Findings::problem(
        what, reason,
        Texts::pick("Make the temporary folder writable, or set TMPDIR to a folder of your own.",
                    "请使临时文件夹可写,或将 TMPDIR 设为您自己的文件夹。"));
}

Finding SystemFindings::diskSpace(qint64 available, qint64 imageSize)
{
    const QString what = QStringLiteral("disk-space");
    const QString remedy = Texts::pick("Free some space.", "请释放磁盘空间。");
    const QString text = Texts::pick("%1 MiB free.", "剩余 %1 MiB。").arg(available / mebibyte);
    if (available < bytesToReserve(imageSize, 0))
        return Findings::problem(what,
                                 text + QLatin1Char(' ') +
                                     Texts::pick("The image needs %1 MiB.", "镜像需要 %1 MiB。")
                                         .arg(bytesToReserve(imageSize, 0) / mebibyte + 1),
                                 remedy);
    if (imageSize == 0 && available < littleSpace)
        return Findings::warning(what, text, remedy);
    return Findings::ok(what, text);
}

Finding SystemFindings::updateLock(bool isTakenElsewhere)
{
    const QString what = QStringLiteral("update-lock");
    if (!isTakenElsewhere)
        return Findings::ok(what, Texts::pick("No other copy is updating.", "没有其他副本正在升级。"));
    return Findings::problem(
        what, Texts::pick("Another copy of the program is updating a device.", "另一个副本正在升级设备。"),
        Texts::pick("Wait until it has finished.", "请等待其完成。"));
}

Finding SystemFindings::tls(const QString &serverAddress, const QString &library)
{
    const QString what = QStringLiteral("tls");
    if (!serverAddress.startsWith(QLatin1String("https:")))
        return Findings::warning(
            what, Texts::pick("The firmware server's address is not secure.", "固件服务器地址未加密。"),
            Texts::pick("Use a program that was built with an https address.",
                        "请使用以 https 地址构建的程序。"));
    if (library.isEmpty())
        return Findings::problem(what, Texts::pick("There is no TLS library.", "没有 TLS 库。"),
                                 Texts::pick("Install OpenSSL.", "请安装 OpenSSL。"));
    return Findings::ok(what, library);
}
