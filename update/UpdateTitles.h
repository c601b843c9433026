#pragma once

#include "support/TranslatableText.h"

/// The status titles of an update, from the press of the start button to its end.
namespace UpdateTitles {

constexpr TranslatableText startWithoutDevice{"Current Status: Start Failed - No Device Detected",
                                              "当前状态: 开始失败 - 没检测到设备"};
constexpr TranslatableText localFile{"Current Status: Executing Local Flashing", "当前状态: 执行本地烧录"};
constexpr TranslatableText folderFailure{"Current Status: ensurePath Failed!", "当前状态: ensurePath Failed"};
constexpr TranslatableText md5Mismatch{"Current Status: md5 failed!", "当前状态: md5对比失败"};
constexpr TranslatableText upgradeStart{"Current Status: Attempting to Upgrade...", "当前状态: 尝试升级..."};
constexpr TranslatableText burnSuccess{"Current Status: Upgrade Successful", "当前状态: 升级成功"};
constexpr TranslatableText burnFailure{"Current Status: Upgrade Failed!", "当前状态: 升级失败!"};

constexpr TranslatableText parsingAddress{"Current Status: Trying to Parse Firmware Address from Server...",
                                          "当前状态: 尝试从服务器解析固件地址..."};
constexpr TranslatableText addressFailed{"Current Status: Failed to Parse File Address",
                                         "当前状态: 解析文件地址失败"};
constexpr TranslatableText addressParsed{"Current Status: Successfully Parsed File Address",
                                         "当前状态: 解析文件地址成功"};
constexpr TranslatableText retrieving{"Current Status: Trying to Retrieve File...",
                                      "当前状态: 尝试获取文件..."};
constexpr TranslatableText downloaded{"Current Status: File Downloaded Successfully",
                                      "当前状态: 下载文件成功"};
constexpr TranslatableText downloadFailed{"Current Status: Error Occurred While Downloading File!",
                                          "当前状态: 下载文件发生错误!"};

} // namespace UpdateTitles
