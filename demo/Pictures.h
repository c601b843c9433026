#pragma once

class DemoScenario;

/// Saves a screenshot in the folder for screenshots: of the whole screen natively, of the window under Wine.
void takePicture(DemoScenario &scenario, const char *name);
