#pragma once

#include "devices/ChosenDevice.h"

class CliReporter;
class CommandContext;
class UpdateSession;

/// The part of an update that the IAP programmer does. Main thread, whose event loop it runs.
class ProgrammerRun
{
public:
    /// All must outlive the run.
    ProgrammerRun(CommandContext &context, UpdateSession &session, CliReporter &reporter);

    /// Programs the session's image into the device over USB, and ends the session's update.
    void run(const ChosenDevice &device);

private:
    CommandContext &m_context;
    UpdateSession &m_session;
    CliReporter &m_reporter;
};
