#pragma once

#include <QJsonObject>
#include <QStringList>

#include <functional>

/// What a report tells of the system. May be called from any thread.
namespace SystemFacts {

/// Returns the ways in which the user's home folder can be written.
QStringList homeFolders();
/// Returns the names by which the system knows the user.
QStringList userNames();
/// Whether two names that differ in letter case only are the same file.
Qt::CaseSensitivity caseOfNames();

/// Returns what the user may do.
QJsonObject rights();

/// Returns the state of the driver, or of the device files and the rules for them: what decides here whether
/// devices can be opened. `isWanted` tells whose devices are looked at, by vendor id.
QJsonObject deviceAccess(const std::function<bool(quint32)> &isWanted);

} // namespace SystemFacts
