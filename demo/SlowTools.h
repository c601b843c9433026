#pragma once

#include <QJsonDocument>

/// Scripts that make the stand-in tools slow enough to be watched.
namespace SlowTools {

QJsonDocument flasher();
QJsonDocument programmer();

} // namespace SlowTools
