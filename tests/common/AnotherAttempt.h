#pragma once

/// Declares that the current test depends on a time limit of the program under test, which it cannot change.
/// If the test fails and the machine was paused while it ran, the test is run again, at most twice, and its
/// output contains all attempts. `limit` describes the limit, for example "the two seconds for shutting
/// down".
///
/// Limits of the test itself do not need this: they are measured in running time.
void dependsOnRealTime(const char *limit);

/// Runs the tests that are selected on the command line, and repeats failed ones as dependsOnRealTime()
/// allows. Returns the exit code of the test program. Needs an application object.
int runTests();
