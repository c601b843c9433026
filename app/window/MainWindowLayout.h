#pragma once

#include "app/window/MainWindowWidgets.h"

#include <functional>

class LocalFileHost;
class QWidget;

/// Builds the main window's interface. The main widget's constructor calls the functions in the order of
/// their declarations, with steps of its own in between. GUI thread. Set the language and the program's font
/// (MainWindowLook::applyProgramFont) before the first call.
namespace MainWindowLayout {

/// Called on the GUI thread when the user changes a control.
struct Callbacks
{
    /// The IAP check box changed to a Qt::CheckState.
    std::function<void(int)> iapStateChanged;
};

/// Sets the main widget's fixed size, then makes the tab row with the flashing page and the connect-type
/// label. The page notifies `host` of the hidden gesture; `host` must outlive the page.
void buildFlashingPage(QWidget *mainWidget, LocalFileHost *host, MainWindowWidgets &widgets);

/// Makes the write-type box with an item for each allowed write type, or "USB" when none is allowed.
void buildWriteTypeBox(QWidget *mainWidget, bool usbAllowed, bool hidAllowed, MainWindowWidgets &widgets);

/// Makes the remaining widgets and lays everything out in the main widget. `chineseLocale` says whether the
/// system locale's country is China. It selects the start button's images only: all texts come from the
/// language tables.
void buildRest(QWidget *mainWidget, bool chineseLocale, const Callbacks &callbacks,
               MainWindowWidgets &widgets);

/// Makes the log check box show and hide `logWindow`.
void connectLogBox(const MainWindowWidgets &widgets, QWidget *logWindow);

/// Replaces the controls by a notice, for the two automatic launch modes.
void applyAutomaticMode(const MainWindowWidgets &widgets);

} // namespace MainWindowLayout
