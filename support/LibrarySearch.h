#pragma once

/// Where the system looks for a library that the program loads by its name.
namespace LibrarySearch {

/// From now on, leaves the working folder out: whoever may write there could have the program run code of
/// theirs. Linux never looks there. Call at the start of main(), before anything is loaded by name.
void leaveOutWorkingFolder();

} // namespace LibrarySearch
