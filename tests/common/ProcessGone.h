#pragma once

#include <QtGlobal>

/// Returns whether there is no process with this id, or only a zombie.
bool processIsGone(qint64 processId);

/// Returns whether there is no process with this id, not even a zombie.
bool processIsReaped(qint64 processId);
