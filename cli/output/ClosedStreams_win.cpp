#include "cli/output/ClosedStreams.h"

// Not needed: on Windows no other file gets the handle of a standard stream.
void fillClosedStreams() {}
