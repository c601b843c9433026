#pragma once

#include "harness/soak/SoakPlan.h"
#include "harness/soak/Use.h"

#include <memory>

/// A program that updates one device after the other.
class SoakRun
{
public:
    virtual ~SoakRun() = default;

    /// Starts the program with its steady clock `lapse` times as fast. Returns what went wrong.
    virtual QString start(int lapse) = 0;
    /// Has one device come, be updated, and go. Returns what was not as it should be.
    virtual QString update(const SoakPlan::Turn &turn) = 0;
    /// Returns what the program holds, now that it waits for a device.
    virtual Use use() = 0;
    /// Ends the program as a user does. Returns what went wrong.
    virtual QString end() = 0;
};

std::unique_ptr<SoakRun> makeWindowSoak(const SoakPlan &plan);
std::unique_ptr<SoakRun> makeTerminalSoak(const SoakPlan &plan);
