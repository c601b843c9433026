#pragma once

#include <QtGlobal>

/// The bytes of a piece of a reply's body that belong in the file.
struct BodySlice
{
    /// The number of bytes at the start of the piece that are not wanted.
    qint64 skip = 0;
    /// The number of wanted bytes that follow them.
    qint64 take = 0;
};

/// Returns the wanted bytes of a piece of `length` bytes that begins at byte `position` of the remote file:
/// those from byte `wanted` up to `end` (exclusive; 0 or less for no end). A piece that begins after `wanted`
/// would leave a hole, so nothing of it is used.
BodySlice cutBody(qint64 position, qint64 length, qint64 wanted, qint64 end);
