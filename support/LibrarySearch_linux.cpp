#include "support/LibrarySearch.h"

void LibrarySearch::leaveOutWorkingFolder() {}
