#include "support/BrokenPipes.h"

void ignoreBrokenPipes()
{
    // Such a write just fails here.
}
