#pragma once

#include <QString>

#include <string_view>

/// The models that are treated apart. Names compare whole and case-sensitively.
namespace ModelLists {

/// Take the update-mode report on the interface whose path holds "Col04".
constexpr std::string_view col04[] = {"DevMar", "DevMcb", "DevMce", "DevMcc", "DevMbs", "DevMbr", "DevMcw"};

/// Take it on the interface whose path holds "MI_00".
constexpr std::string_view mi00[] = {"DevMbu", "DevMbw", "DevMah", "DevMai", "DevMct", "DevMay",
                                     "DevMaz", "DevMdn", "DevMck", "DevMci", "DevMcv", "DevMdb",
                                     "DevMdc", "DevMdd", "DevMcf", "DevMcj", "DevMby", "DevMbx"};

/// Their ids go to the IAP panel. DevMdh is missing although it is updated through the IAP
/// programmer: it is not to be added.
constexpr std::string_view iapIdHandOver[] = {"DevMdq", "DevMde", "DevMdf", "DevMdg", "DevMdr",
                                              "DevMds", "DevMdt", "DevMdi", "DevMdu"};

bool isCol04(const QString &name);
bool isMi00(const QString &name);
/// In one of the two lists above.
bool isHidPathModel(const QString &name);
bool handsIdsToIapPanel(const QString &name);

} // namespace ModelLists
