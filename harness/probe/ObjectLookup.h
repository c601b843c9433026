#pragma once

#include <QString>

class QWidget;

/// Finds widgets of the running program, which owns them. GUI thread only.
namespace ObjectLookup {

/// Returns the widget with this name, or null. "window:<title>" finds a visible top-level window; any other
/// name is an object name or, if no object has it, a class name. Visible widgets are preferred to hidden
/// ones.
QWidget *find(const QString &name);

} // namespace ObjectLookup
