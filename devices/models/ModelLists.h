#pragma once

#include <QString>

#include <string_view>

/// The models that need special treatment. Whole names are compared, case-sensitively.
namespace ModelLists {

/// Models that accept the update-mode report on the interface whose path contains "Col04".
constexpr std::string_view col04[] = {"DevMar", "DevMcb", "DevMce", "DevMcc", "DevMbs", "DevMbr", "DevMcw"};

/// Models that accept it on the interface whose path contains "MI_00".
constexpr std::string_view mi00[] = {"DevMbu", "DevMbw", "DevMah", "DevMai", "DevMct", "DevMay",
                                     "DevMaz", "DevMdn", "DevMck", "DevMci", "DevMcv", "DevMdb",
                                     "DevMdc", "DevMdd", "DevMcf", "DevMcj", "DevMby", "DevMbx"};

/// Models whose ids go to the IAP panel. Intentional: without DevMdh, although that is updated through the
/// IAP programmer.
constexpr std::string_view iapIdHandOver[] = {"DevMdq", "DevMde", "DevMdf", "DevMdg", "DevMdr",
                                              "DevMds", "DevMdt", "DevMdi", "DevMdu"};

bool isCol04(const QString &name);
bool isMi00(const QString &name);
/// Returns whether the model is in `col04` or `mi00`.
bool isHidPathModel(const QString &name);
bool handsIdsToIapPanel(const QString &name);

} // namespace ModelLists
