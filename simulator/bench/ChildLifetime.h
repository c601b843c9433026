#pragma once

#include <QtGlobal>

/// Ties a child process to the one that started it, so that a test that is killed leaves nothing
/// behind. The work is the platform's.
namespace ChildLifetime {

/// To be called in the child, between fork and exec: it gets a process group of its own, and is
/// ended when the thread that started it ends. Async-signal-safe.
void bindToParent();
/// Kills what is left of the process group that `processId`, a child of ours, leads.
void killGroup(qint64 processId);

} // namespace ChildLifetime
