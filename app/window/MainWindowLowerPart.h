#pragma once

#include "app/window/MainWindowWidgets.h"

/// The part of the main window below the tabs. The returned rows have no parent yet.
namespace MainWindowLowerPart {

QHBoxLayout *buildProgressRow(MainWindowWidgets &widgets);

/// Makes the firmware file's path field, the labels, the log check box and the start button. `chineseLocale`
/// selects the start button's images.
QHBoxLayout *buildBottomRow(bool chineseLocale, MainWindowWidgets &widgets);

} // namespace MainWindowLowerPart
