#pragma once

class DemoScenario;

/// A whole update without a person, with pictures of it and a report on standard output. Returns
/// whether the device has the right bytes and the window says so.
bool updateByItself(DemoScenario &scenario);
