#pragma once

#include <QString>

/// Appends lines to the log files, which are plain UTF-8 text. A file is opened for each write and closed
/// again, so that other programs may read or copy it meanwhile. May be called from any thread, but only by
/// one at a time for each file: otherwise lines could be mixed. The window program writes on its GUI thread
/// only; quillmarsh-cli takes a lock for each line.
namespace LogFile {

/// Appends `content` and a line feed. Returns whether they were written; if the file cannot be opened or is
/// not a regular file, writes a warning to the debug stream.
bool appendLine(const QString &filePath, const QString &content);

/// Appends "[yyyy-MM-dd HH:mm:ss] text" with the local time.
bool appendTimestampedLine(const QString &filePath, const QString &text);

/// Returns the path of the log that users send to support; it is in the working directory.
QString updateLogPath();
/// Returns the path of the list of enumerated HID interfaces; it is in the working directory.
QString interfaceLogPath();

} // namespace LogFile
