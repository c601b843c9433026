#pragma once

#include "devices/ChosenDevice.h"

class CliReporter;
class CommandContext;
class UpdateSession;

/// Runs the IAP programmer for an update. Main thread; waits in an event loop.
class ProgrammerRun
{
public:
    /// The arguments must outlive the run.
    ProgrammerRun(CommandContext &context, UpdateSession &session, CliReporter &reporter);

    /// Programs the session's image into the device over USB, and ends the session's update.
    void run(const ChosenDevice &device);

private:
    CommandContext &m_context;
    UpdateSession &m_session;
    CliReporter &m_reporter;
};
