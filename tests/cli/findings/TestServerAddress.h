#pragma once

#include <QString>

/// What firmwareServerAddress() returns in these tests. Set it before a command runs.
QString &testServerAddress();
