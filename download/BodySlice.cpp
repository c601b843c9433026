#include "download/BodySlice.h"

#include <algorithm>

BodySlice cutBody(qint64 position, qint64 length, qint64 wanted, qint64 end)
{
    if (position > wanted)
        return {length, 0};
    BodySlice slice;
    slice.skip = std::min(wanted - position, length);
    slice.take = length - slice.skip;
    if (end > 0)
        slice.take = std::clamp<qint64>(end - wanted, 0, slice.take);
    return slice;
}
