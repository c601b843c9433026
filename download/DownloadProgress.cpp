#include "download/DownloadProgress.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr qint64 mebibyte = 1048576;

}

double roundedPercent(qint64 sum, qint64 size)
{
    const double factor = 100.0 / double(size);
    return std::round(double(sum) * factor);
}

int barValue(double percent)
{
    return static_cast<int>(std::min(percent, double(std::numeric_limits<int>::max())));
}

QString megabytesOf(qint64 done, qint64 total)
{
    return QString::number(done / mebibyte) + QStringLiteral(" / ") + QString::number(total / mebibyte) +
           QStringLiteral(" MB/S");
}

QString receivedLine(qint64 bytesReceived, qint64 bytesTotal)
{
    if (bytesTotal < 1)
        return QStringLiteral("Received:") + QString::number(bytesReceived) + QStringLiteral("bytes");
    return QStringLiteral("Progress:") + QString::number(bytesReceived * 100 / bytesTotal) + QLatin1Char('%');
}
