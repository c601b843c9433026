#include "cli/ClosedStreams.h"

// The standard streams have handles of their own, which no other file gets.
void fillClosedStreams() {}
