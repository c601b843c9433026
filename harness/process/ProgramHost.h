#pragma once

#include "harness/process/Launch.h"
#include "simulator/time/RunningTime.h"

#include <optional>

/// Starts the program under test and determines how it ended.
class ProgramHost
{
public:
    struct State
    {
        bool running = false;
        /// Set once the program has ended by itself.
        std::optional<int> exitCode;
        /// Whether it was ended by a signal, that is, has crashed or was killed.
        bool signalled = false;
    };

    virtual ~ProgramHost() = default;

    virtual bool run(const Launch &launch) = 0;
    virtual State programState() = 0;
    virtual void killProgram() = 0;
    virtual QString errorText() const = 0;

    /// Waits for the end of the program. Returns its exit code, or nothing if it is still running after
    /// `limitMs` or was ended by a signal.
    std::optional<int> waitForExit(int limitMs = eventLimitMs);
};
