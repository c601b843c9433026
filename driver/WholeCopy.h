#pragma once

#include <QString>

/// Copies a file atomically: `destination` appears with its whole contents or not at all. A half-written
/// driver would never be repaired, because existing files are not overwritten. Returns whether the file was
/// copied. After a failure nothing is left behind; if the process is killed, the partial copy beside the
/// destination is replaced by the next one.
bool copyWhole(const QString &source, const QString &destination);
