#pragma once

#include <QString>

/// One line for support: program version, system, locale and application folder.
QString systemDescription();
