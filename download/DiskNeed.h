#pragma once

#include <QtGlobal>

/// Returns the free bytes that a download of `size` bytes needs, whose parts and whole are on disk at the
/// same time, when `onDisk` bytes of the parts are there already. A size that cannot be doubled needs the
/// largest number, less what is there. Both values are 0 or more.
qint64 bytesToReserve(qint64 size, qint64 onDisk);
