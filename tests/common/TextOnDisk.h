#pragma once

#include <QByteArray>

/// Returns the bytes of a file to which this text was written in text mode, that is, with the platform's line
/// endings.
QByteArray textOnDisk(const QByteArray &text);
