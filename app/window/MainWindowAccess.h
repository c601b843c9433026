#pragma once

#include "app/window/MainWindowWidgets.h"

/// Makes the main window usable with a screen reader or without a mouse: names the controls that show no
/// text, ties labels to their controls, and sets the tab order.
namespace MainWindowAccess {

/// Reports the program's windows, which are plain widgets, to screen readers as windows. Call before the
/// first window is made.
void reportWindows();

/// Gives the controls accessible names in the current language. The start button's name is the text of its
/// image, which `chineseLocale` selects.
void nameControls(bool chineseLocale, const MainWindowWidgets &widgets);
/// Sets the tab order from left to right and from top to bottom. The widgets must already be in the window.
void orderFocus(const MainWindowWidgets &widgets);

} // namespace MainWindowAccess
