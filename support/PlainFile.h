#pragma once

class QFile;

/// Files that somebody else may have put something into the place of.
namespace PlainFile {

/// Opens the file to append text, and creates it at need. Returns false when it cannot be opened, or is no
/// plain file: opening a named pipe would block until somebody reads from it. Never blocks.
bool openToAppend(QFile &file);

} // namespace PlainFile
