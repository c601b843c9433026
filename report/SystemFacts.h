#pragma once

#include <QJsonObject>
#include <QStringList>

#include <functional>

/// Facts about the system for a report. May be called from any thread.
namespace SystemFacts {

/// Returns the spellings of the user's home folder.
QStringList homeFolders();
/// Returns the names by which the system knows the user.
QStringList userNames();
/// Returns whether names that differ only in letter case are different names on this system.
Qt::CaseSensitivity caseSensitivityOfNames();

/// Returns the user's rights and groups.
QJsonObject rights();

/// Returns what decides on this system whether devices can be opened: the state of the driver, or of the
/// device files and the rules for them. `isWanted` returns whether the devices of a vendor id are included.
QJsonObject deviceAccess(const std::function<bool(quint32)> &isWanted);

} // namespace SystemFacts
