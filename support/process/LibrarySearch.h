#pragma once

/// The places where the system searches for a library that the program loads by name.
namespace LibrarySearch {

/// Excludes the working folder: otherwise anybody who may write to it could make the program run their code.
/// Linux never searches there. Call it at the start of main(), before any library is loaded by name.
void excludeWorkingFolder();

} // namespace LibrarySearch
