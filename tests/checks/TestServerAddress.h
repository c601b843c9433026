#pragma once

#include <QString>
#include <QStringList>

/// What firmwareServerAddress() returns in these tests. Set it before a command runs.
QString &testServerAddress();

/// What firmwareKeys() returns in these tests.
QStringList &testFirmwareKeys();
