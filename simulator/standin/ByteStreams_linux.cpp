#include "simulator/standin/ByteStreams.h"

void useByteStreams()
{
    // The streams are always binary on Linux.
}
