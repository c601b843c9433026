#pragma once

#include "harness/process/Launch.h"
#include "simulator/time/RunningTime.h"

#include <optional>

/// What starts the program under test and knows how it ended.
class ProgramHost
{
public:
    struct State
    {
        bool running = false;
        /// Set once it has ended by itself.
        std::optional<int> exitCode;
        /// It was ended by a signal: crashed or killed.
        bool signalled = false;
    };

    virtual ~ProgramHost() = default;

    virtual bool run(const Launch &launch) = 0;
    virtual State programState() = 0;
    virtual void killProgram() = 0;
    virtual QString errorText() const = 0;

    /// The exit code; none when it still runs after `limitMs` or was ended by a signal.
    std::optional<int> waitForExit(int limitMs = eventLimitMs);
};
