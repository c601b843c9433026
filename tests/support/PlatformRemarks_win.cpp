#include "tests/support/PlatformRemarks.h"

bool isPlatformRemark(const QString &message)
{
    // Of what Wine does not have, at each window and each pointer.
    return message.startsWith(QLatin1String("EnableNonClientDpiScaling() failed")) ||
           message.startsWith(QLatin1String("QPixmap::fromWinHICON(), failed"));
}
