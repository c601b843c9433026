#pragma once

#include <QString>

/// The on-disk logs: plain UTF-8 text in which lines are only ever added. The file is opened for
/// each write and closed again, so that another program may read or copy it meanwhile. Call from
/// the GUI thread only, or lines of different sources could interleave.
namespace LogFile {

/// Appends `content` and a line end as they are. A file that cannot be opened, or is no plain file, costs the
/// line and a warning on the debug stream; returns whether it was written.
bool appendLine(const QString &filePath, const QString &content);

/// Appends "[yyyy-MM-dd HH:mm:ss] text" with the local time.
bool appendTimestampedLine(const QString &filePath, const QString &text);

/// The log that users send to support; in the working directory.
QString updateLogPath();
/// The list of HID interfaces seen; in the working directory.
QString interfaceLogPath();

} // namespace LogFile
