#pragma once

#include "support/LanguageUtilities.h"
#include "support/TranslatableText.h"

#include <QString>

/// The main window's texts.
namespace MainWindowTexts {

constexpr TranslatableText selectPartition{"Select partition and flash", "选择分区烧写"};
constexpr TranslatableText notice{"MustKnow", "    需知:\n"
                                              "    在升级固件过程中请勿晃动usb线或晃动设备，\n"
                                              "    或拔插设备。\n"
                                              "    升级过程中请勿关闭本程序，\n"
                                              "    等待程序运行完毕。"};
constexpr TranslatableText automaticNotice{"MustKnow_arouse",
                                           "    温馨提示:\n"
                                           "\n"
                                           "    1.在固件升级过程中请勿触碰晃动usb线和拔插设备。\n"
                                           "\n"
                                           "    2.升级过程中请勿关闭本程序，等待程序运行完毕。\n"
                                           "\n"
                                           "    3.在升级过程中，设备屏幕熄灭为正常现象，请耐\n"
                                           "      心等待。升级过程完成后，设备屏幕会正常点亮。\n"
                                           "\n"
                                           "    4.如您遇到无法解决的问题，请联系我们寻求帮助。\n"
                                           "\n"
                                           "    5.在升级过程中，软件退出为正常现象。升级过程完成后，\n"
                                           "      请手动打开软件。"};
constexpr TranslatableText deviceNotDetected{"Device not detected", "未发现设备"};
constexpr TranslatableText restartAfterFlash{"Restart the device after a successful flash",
                                             "烧写成功后重启设备"};
constexpr TranslatableText iapSet{"IAPSet", "IAPSet"};
constexpr TranslatableText deviceModel{"Device Model", "设备型号: "};
/// The same caption in front of the connected model's name; its fallback ends without a blank.
constexpr TranslatableText connectedModel{"Device Model", "设备型号:"};
constexpr TranslatableText serverVersion{"Server Firmware Version", "服务器固件版本号: "};
constexpr TranslatableText currentStatus{"Current Status", "当前状态: "};
constexpr TranslatableText log{"Log", "日志"};
constexpr TranslatableText flashImage{"Flash the image", "烧写镜像"};
constexpr TranslatableText connectType{"ConnectType", "连接方式:"};

/// Returns the text in the current language.
inline QString translated(const TranslatableText &text)
{
    return LanguageUtilities::instance().lookup(text);
}

} // namespace MainWindowTexts
