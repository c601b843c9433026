#pragma once

#include <QtGlobal>

/// Whether no process has this id, or only one that has ended and waits for its parent to ask.
bool processIsGone(qint64 processId);

/// Whether no process has this id, not even an ended one.
bool processIsReaped(qint64 processId);
