#pragma once

#include <QByteArray>

/// The bytes of a file to which this text was written in text mode: with the platform's line ends.
QByteArray textOnDisk(const QByteArray &text);
