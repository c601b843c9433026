#include "support/process/LibrarySearch.h"

void LibrarySearch::excludeWorkingFolder() {}
