#include "simulator/standin/ByteStreams.h"

#include <cstdio>
#include <initializer_list>

#include <fcntl.h>
#include <io.h>

void useByteStreams()
{
    for (std::FILE *stream : {stdin, stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
}
