#include "tests/common/PlatformRemarks.h"

bool isPlatformRemark(const QString & /*message*/)
{
    return false;
}
