#pragma once

#include <QJsonObject>

class QWidget;

/// Describes widgets for the probe, without changing the state of the program.
namespace Read {

/// Returns class, state, texts and global geometry of a widget, as far as its class has them.
QJsonObject widget(const QWidget &widget);
/// Returns {"windows":[..]} with the visible top-level windows; message boxes have their text and buttons.
QJsonObject windows();
/// Returns {"widgets":[..]} with class, object name, object name of the parent, and visibility of each
/// widget.
QJsonObject tree();

} // namespace Read
