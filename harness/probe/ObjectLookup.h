#pragma once

#include <QString>

class QWidget;

/// Finding widgets of the running program. GUI thread only; the program owns what is returned.
namespace ObjectLookup {

/// The widget that `name` means, null when there is none: by "window:<title>" a visible top-level
/// window, by object name, or by class name when no object has that name. A visible widget goes
/// before hidden ones.
QWidget *find(const QString &name);

} // namespace ObjectLookup
