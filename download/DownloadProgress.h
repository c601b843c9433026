#pragma once

#include <QString>

/// Share of `size` that `sum` bytes are, in percent, rounded half away from zero. It exceeds 100 when
/// earlier runs' bytes are in the sum. `size` is greater than 0.
double roundedPercent(qint64 sum, qint64 size);

/// Returns a percentage as the progress bar's value: truncated, and no larger than such a value can be.
int barValue(double percent);

/// "3 / 12 MB/S": whole mebibytes on disk and in all. The unit is a label; no speed is computed.
QString megabytesOf(qint64 done, qint64 total);

/// "Progress:42%" (truncated), or "Received:2048bytes" when `bytesTotal` is not known (below 1).
QString receivedLine(qint64 bytesReceived, qint64 bytesTotal);
