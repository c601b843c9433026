#pragma once

class QWidget;

/// What the whole program looks like, beyond the main window's layout. GUI thread.
namespace MainWindowLook {

/// Call before the application object is made: fractional screen scales are kept as they are, and
/// the windows are drawn without the graphics card.
void prepareToolkit();

/// Gives the application a font of a fixed size in the layout's own pixels (11; 12 for Chinese):
/// the layout has fixed sizes, which a font in points outgrows on many systems. Call before the
/// first widget is made.
void applyProgramFont(bool chinese);

/// Gives the application's windows their icon.
void applyProgramIcon();

/// Puts the hidden top-level `window` directly below the main widget.
void placeBelow(const QWidget &mainWidget, QWidget &window);

} // namespace MainWindowLook
