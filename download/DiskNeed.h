#pragma once

#include <QtGlobal>

/// Returns the free bytes that a download of `size` bytes needs if `onDisk` bytes of its parts exist already.
/// The parts and the merged file are on disk at the same time. If twice the size overflows, the largest
/// number is used instead. Both arguments must not be negative.
qint64 bytesToReserve(qint64 size, qint64 onDisk);
