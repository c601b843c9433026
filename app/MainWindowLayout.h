#pragma once

#include "app/MainWindowWidgets.h"

#include <functional>

class LocalFileHost;
class QWidget;

/// Builds the main window's interface, step by step: the main widget's constructor calls the
/// functions in the order in which they stand here, with other steps of its own between them. They
/// run on the GUI thread; the language must have been chosen before the first of them.
///
/// What is not asked for by the required sizes is the style's own: fonts are set by
/// applyProgramFont (app/MainWindowLook.h) before.
namespace MainWindowLayout {

/// What the widgets tell the main widget. The functions run on the GUI thread.
struct Callbacks
{
    /// The IAP check box changed to a Qt::CheckState.
    std::function<void(int)> iapStateChanged;
};

/// Fixes the main widget's size, then makes the tab row with the flashing page, and the
/// connect-type label. `host` is told about the hidden gesture and must outlive the page.
void buildFlashingPage(QWidget *mainWidget, LocalFileHost *host, MainWindowWidgets &widgets);

/// Makes the connect-type box; its items follow the two flags of the write type.
void buildConnectTypeBox(QWidget *mainWidget, bool usbAllowed, bool hidAllowed, MainWindowWidgets &widgets);

/// Makes everything else and lays it all out in the main widget. `chineseLocale` is whether the
/// system locale's country is China: it chooses the start button's images, while all texts come
/// from the language tables.
void buildRest(QWidget *mainWidget, bool chineseLocale, const Callbacks &callbacks,
               MainWindowWidgets &widgets);

/// Shows `logWindow` while the log check box is ticked and hides it otherwise.
void connectLogBox(const MainWindowWidgets &widgets, QWidget *logWindow);

/// Reduces the interface for the two automatic launch modes: a notice instead of the controls.
void applyAutomaticMode(const MainWindowWidgets &widgets);

} // namespace MainWindowLayout
