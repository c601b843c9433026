#pragma once

class QFile;

/// Access to files that another user may have replaced by something else, for example a named pipe.
namespace PlainFile {

/// Opens the file to append text and creates it if needed. Returns false if it cannot be opened or is not a
/// regular file. Never blocks, as opening a named pipe would.
bool openToAppend(QFile &file);

} // namespace PlainFile
