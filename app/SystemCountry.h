#pragma once

/// Whether the system locale's country is China. It chooses the language, the window title and the
/// start button's images.
bool isSystemCountryChina();
