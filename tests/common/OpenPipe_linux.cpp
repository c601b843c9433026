#include "tests/common/OpenPipe.h"

#include <unistd.h>

bool openPipe(int ends[2])
{
    return pipe(ends) == 0;
}
