#pragma once

#include "app/window/MainWindowWidgets.h"

/// What users of the main window need who cannot see it, or have no mouse: names for controls that show none,
/// labels that belong to their control, and an order of the focus that follows the eye.
namespace MainWindowAccess {

/// Has the program's windows, which are plain widgets, reported to screen readers as windows. Call before the
/// first window is made.
void reportWindows();

/// Names the controls in the current language, the start button as its image reads in the country's.
void nameControls(bool chineseLocale, const MainWindowWidgets &widgets);
/// Has Tab go through the window from left to right and from top to bottom. The widgets must be in the
/// window.
void orderFocus(const MainWindowWidgets &widgets);

} // namespace MainWindowAccess
