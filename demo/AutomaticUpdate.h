#pragma once

class DemoScenario;

/// Runs a whole update, saves screenshots and prints the result. Returns whether the device has received the
/// right bytes and the window reports success.
bool runAutomaticUpdate(DemoScenario &scenario);
