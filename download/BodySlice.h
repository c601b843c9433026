#pragma once

#include <QtGlobal>

/// Which bytes of a piece of a reply's body belong into the file.
struct BodySlice
{
    /// Bytes at the piece's start that are not wanted.
    qint64 skip = 0;
    /// Bytes after those that are.
    qint64 take = 0;
};

/// Cuts a piece of `length` bytes, whose first is byte `position` of the remote file, to what is
/// wanted of it: from byte `wanted` on, up to `end` (exclusive; 0 or less for no end). A piece that
/// begins after `wanted` leaves a hole and gives nothing.
BodySlice cutBody(qint64 position, qint64 length, qint64 wanted, qint64 end);
