#pragma once

#include <QJsonDocument>

/// Scripts of stand-in tools that take their time, so that there is something to see.
namespace UnhurriedTools {

QJsonDocument flasher();
QJsonDocument programmer();

} // namespace UnhurriedTools
