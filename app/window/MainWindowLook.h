#pragma once

class QWidget;

/// The program's appearance apart from the main window's layout. GUI thread.
namespace MainWindowLook {

/// Sets Qt's application attributes: fractional screen scales are used as they are, and windows are drawn
/// without the graphics card. Call before the application object is made.
void prepareQt();

/// Sets the application's font size to 11 pixels, or 12 for Chinese. A font sized in points does not fit the
/// layout's fixed sizes on many systems. Call before the first widget is made.
void applyProgramFont(bool chinese);

/// Sets the icon of the application's windows.
void applyProgramIcon();

/// Hides the top-level `window` and moves it directly below the main widget.
void placeBelow(const QWidget &mainWidget, QWidget &window);

} // namespace MainWindowLook
