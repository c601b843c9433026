#pragma once

#include "support/TranslatableText.h"

/// The status titles of the segmented download, in the order in which a run shows them.
namespace DownloadTitles {

constexpr TranslatableText preparingTask{"Current Status: Preparing download task...",
                                         "当前状态: 准备下载任务..."};
constexpr TranslatableText noAddress{"Current Status: Error 1", "当前状态: 错误1"};
constexpr TranslatableText waitingForServer{"Current Status: Waiting for server response...",
                                            "当前状态: 等待服务器返回..."};
constexpr TranslatableText preparing{"Current Status: Preparing to download...", "当前状态: 准备下载..."};
/// The fallback ends with a space because the sizes follow it directly.
constexpr TranslatableText downloading{"Current Status: Downloading...", "当前状态: 正在下载 "};
constexpr TranslatableText downloaded{"Current Status: Download Complete - Please Wait",
                                      "当前状态: 下载完成 - 稍后"};
constexpr TranslatableText merging{"Current Status: Merging Files...", "当前状态: 合并文件..."};
constexpr TranslatableText completed{"Current Status: Download Completed", "当前状态: 完成下载"};
constexpr TranslatableText mergeFailed{"Current Status: File Merging Failed", "当前状态: 合并文件失败"};

} // namespace DownloadTitles
