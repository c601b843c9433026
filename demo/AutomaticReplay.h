#pragma once

class DemoScenario;

/// Prints what the window shows of the devices of a report, tries an update, and saves screenshots of both.
/// Returns whether the window could be operated; the result of the update does not matter.
bool runAutomaticReplay(DemoScenario &scenario);
