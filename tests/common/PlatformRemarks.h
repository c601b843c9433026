#pragma once

#include <QString>

/// Returns whether Qt prints this message because of the platform, regardless of the program.
bool isPlatformRemark(const QString &message);
