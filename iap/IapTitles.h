#pragma once

#include "support/TranslatableText.h"

/// The status titles of a run of the IAP programmer. Intentional: the keys are Chinese and the fallbacks
/// English. No table has these keys, so the titles are English in every language.
namespace IapTitles {

constexpr TranslatableText attempting{"当前状态: 尝试升级...", "Current Status: Attempting to Upgrade..."};
constexpr TranslatableText inProgress{"当前状态: 正在进行IAP升级", "Current Status: IAP Progress"};
constexpr TranslatableText success{"当前状态: 升级成功", "Current Status: Upgrade Successful"};
constexpr TranslatableText failure{"当前状态: 升级失败!", "Current Status: Upgrade Failed!"};

} // namespace IapTitles
