#include "tests/support/PlatformRemarks.h"

bool isPlatformRemark(const QString & /*message*/)
{
    return false;
}
