#pragma once

#include <QString>

/// Whether the toolkit says this of the platform that it runs on, whatever the program does.
bool isPlatformRemark(const QString &message);
