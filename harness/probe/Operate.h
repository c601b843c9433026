#pragma once

#include <QJsonObject>

class QWidget;

/// Operates the program as a user would. Mouse, key and close events go through the window system's event
/// queue, so that modal dialogs block them. The request is answered before the event is delivered, because
/// handling the event may run a nested event loop.
namespace Operate {

/// Presses and releases a mouse button ("button": "left", "right" or "middle") in the middle of
/// the widget, or at "x","y" in it. Fails if the widget is not visible at that point.
QJsonObject click(QWidget &widget, const QJsonObject &request);
/// Clicks a two-state button unless it has the wanted state ("checked", default true).
QJsonObject check(QWidget &widget, const QJsonObject &request);
/// Closes the window of the widget, as a window manager does.
QJsonObject close(QWidget &widget);
/// Moves the window of the widget to "x","y".
QJsonObject move(QWidget &widget, const QJsonObject &request);
/// Types "text", or presses the key whose Qt::Key number is "key", in the widget's window.
QJsonObject key(QWidget &widget, const QJsonObject &request);
/// Clicks a button of a dialog, which is found by its text or by the name of the standard button ("Ok"). If
/// there are several dialogs, the active modal one is used.
QJsonObject pressDialogButton(const QString &name);
/// Sets the text of a line edit or selects the item with that text in a combo box.
QJsonObject setText(QWidget &widget, const QString &text);
/// Renders the widget and saves the picture to a file.
QJsonObject grabWidget(QWidget &widget, const QString &path);
/// Saves a screenshot to a file. Areas outside of the program's windows are white.
QJsonObject grabScreen(const QString &path);

} // namespace Operate
