#pragma once

#include <QJsonObject>

class QWidget;

/// What the probe does to the program, as a user would. Mouse, keys and closing go through the
/// window system's event queue and are answered before they are delivered: what they set off may
/// run an event loop of its own. So a modal dialog blocks them as it blocks a user.
namespace Operate {

/// Presses and releases a mouse button ("button": "left", "right" or "middle") in the middle of
/// the widget, or at "x","y" in it. Fails when the widget cannot be seen at that place.
QJsonObject click(QWidget &widget, const QJsonObject &request);
/// Clicks a two-state button when its state is not the wanted one ("checked", default true).
QJsonObject check(QWidget &widget, const QJsonObject &request);
/// The close of the window manager, for the window that the widget is in.
QJsonObject close(QWidget &widget);
/// Moves the window that the widget is in to "x","y".
QJsonObject move(QWidget &widget, const QJsonObject &request);
/// Types "text", or presses the key whose Qt::Key number is "key", in the widget's window.
QJsonObject key(QWidget &widget, const QJsonObject &request);
/// Clicks the button of a dialog, by its text or by the name of its standard button ("Ok"); in
/// the dialog that blocks the others when there are several.
QJsonObject pressDialogButton(const QString &name);
/// Sets the text of a line edit or picks the item of that text in a combo box.
QJsonObject setText(QWidget &widget, const QString &text);
/// Saves the picture of the widget, drawn again, to a file.
QJsonObject grabWidget(QWidget &widget, const QString &path);
/// Saves what is on the screen.
QJsonObject grabScreen(const QString &path);

} // namespace Operate
