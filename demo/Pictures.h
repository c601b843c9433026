#pragma once

class DemoScenario;

/// Saves a picture of the window, or of all of the screen where there is only the program, in the folder for
/// pictures.
void takePicture(DemoScenario &scenario, const char *name);
