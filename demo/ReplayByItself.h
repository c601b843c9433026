#pragma once

class DemoScenario;

/// Shows what the window makes of the devices of a report, tries an update, and leaves pictures of both.
/// Returns whether the window could be looked at; how the update ends is part of what is shown.
bool replayByItself(DemoScenario &scenario);
