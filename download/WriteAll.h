#pragma once

#include <QtGlobal>

class QFileDevice;

/// Writes as much of the bytes as there is room for and returns how many that were. Unlike one
/// write(), which reports no error when a disk fills up on the way, it leaves the file's error set
/// when that is less than `size`.
qint64 writeAll(QFileDevice &file, const char *data, qint64 size);
