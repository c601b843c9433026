#pragma once

#include "support/BilingualText.h"

/// The status titles of a run of the IAP programmer. The Chinese texts are passed as the keys and
/// the English ones as what is shown without an entry: no table has such keys, and so these titles
/// are English in every language. They are meant to be.
namespace IapTitles {

constexpr BilingualText attempting{"当前状态: 尝试升级...", "Current Status: Attempting to Upgrade..."};
constexpr BilingualText inProgress{"当前状态: 正在进行IAP升级", "Current Status: IAP Progress"};
constexpr BilingualText success{"当前状态: 升级成功", "Current Status: Upgrade Successful"};
constexpr BilingualText failure{"当前状态: 升级失败!", "Current Status: Upgrade Failed!"};

} // namespace IapTitles
