#include "support/LibrarySearch.h"

void LibrarySearch::excludeWorkingFolder() {}
