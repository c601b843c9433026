#include "tests/common/PlatformRemarks.h"

bool isPlatformRemark(const QString &message)
{
    // Messages about functions that Wine lacks, for each window and each pointer.
    return message.startsWith(QLatin1String("EnableNonClientDpiScaling() failed")) ||
           message.startsWith(QLatin1String("QPixmap::fromWinHICON(), failed"));
}
