#pragma once

#include <QtGlobal>

class QFileDevice;

/// Writes as many of the bytes as possible and returns their number. If that is less than `size`, the file's
/// error is set, whereas a single write() reports no error if the disk fills up halfway.
qint64 writeAll(QFileDevice &file, const char *data, qint64 size);
