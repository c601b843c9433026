#include "tests/common/OpenPipe.h"

#include <fcntl.h>
#include <io.h>

bool openPipe(int ends[2])
{
    return _pipe(ends, 4096, _O_BINARY | _O_NOINHERIT) == 0;
}
