#pragma once

#include <QString>
#include <QStringList>

/// What a path of a HID interface tells, and how the same is told by a path of another system.
namespace ReportedHidPath {

/// Returns the words such as "MI_00" and "Col04" in a text, in small letters, each once, in their order.
QStringList wordsIn(const QString &text);

/// Returns the interface number in the words; -1 if they have none.
int numberIn(const QStringList &words);

/// Returns the file name of a path such as "/dev/hidraw0"; empty for a path of another kind.
QString nodeName(const QString &path);

/// Returns a file name that holds the words, and no others of that kind.
QString nodeName(const QStringList &words, int ordinal);

/// Returns a path of Windows that holds the words, and no others of that kind.
QString windowsPath(int vendorId, int productId, const QStringList &words, int ordinal);

} // namespace ReportedHidPath
