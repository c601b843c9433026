#pragma once

#include <QJsonObject>

class QWidget;

/// What the probe tells of widgets. Nothing here changes the program's state.
namespace Read {

/// Class, state, texts and global geometry of one widget; only what its class has.
QJsonObject widget(const QWidget &widget);
/// {"windows":[..]}: the visible top-level windows; message boxes with text and buttons.
QJsonObject windows();
/// {"widgets":[..]}: class, object name, parent's object name and visibility of every widget.
QJsonObject tree();

} // namespace Read
