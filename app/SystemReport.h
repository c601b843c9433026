#pragma once

#include <QString>

/// Facts about the system that the program runs on. GUI thread; needs no application object except where
/// noted.
namespace SystemReport {

/// Returns whether the system locale's country is China. This selects the language, the window title and the
/// start button's images.
bool isCountryChina();

/// Returns one line for support: program version, system, locale and application folder. Needs the
/// application object.
QString describe();

/// Writes the TLS library's versions to the debug stream. Nothing depends on the result.
void writeTlsVersions();

} // namespace SystemReport
