#pragma once

#include <QString>

/// Returns `sum` in percent of `size`, rounded half away from zero. Exceeds 100 if the sum contains bytes of
/// earlier runs. `size` must be greater than 0.
double roundedPercent(qint64 sum, qint64 size);

/// Returns a percentage as the value of the progress bar: truncated, and limited to the range of int.
int barValue(double percent);

/// Returns for example "3 / 12 MB/S": the mebibytes on disk and in total. Intentional: the unit is only a
/// label, not a speed.
QString megabytesOf(qint64 done, qint64 total);

/// Returns for example "Progress:42%" (truncated), or "Received:2048bytes" if `bytesTotal` is not known
/// (below 1).
QString receivedLine(qint64 bytesReceived, qint64 bytesTotal);
