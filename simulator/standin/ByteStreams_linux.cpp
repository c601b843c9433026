#include "simulator/standin/ByteStreams.h"

void useByteStreams()
{
    // They always do here.
}
