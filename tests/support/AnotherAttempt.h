#pragma once

/// Says that the test that is running depends on a time limit of the program under test that it cannot
/// stretch. When the test fails, and the machine stood still while it ran, it is run once more, at most
/// twice, and all attempts are in its output. `limit` names that limit, as in "the two seconds for leaving".
///
/// Limits of a test's own need no other attempt: they are measured in running time.
void dependsOnRealTime(const char *limit);

/// Runs the tests that the command line selects, and those again that dependsOnRealTime() allows it.
/// Returns the exit code of the test program. Needs an application object.
int runTests();
