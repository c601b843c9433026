#pragma once

#include "app/MainWindowWidgets.h"

/// What stands below the tabs. The rows have no parent yet.
namespace MainWindowLowerPart {

QHBoxLayout *buildProgressRow(MainWindowWidgets &widgets);

/// The firmware file, the labels, the log switch and the start button.
QHBoxLayout *buildBottomRow(bool chineseLocale, MainWindowWidgets &widgets);

} // namespace MainWindowLowerPart
