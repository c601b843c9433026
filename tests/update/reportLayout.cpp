// Prints the first bytes of the update-mode report on the system on which this program runs.
#include "update/UpdateModeReport.h"

#include <cstdio>

int main()
{
    const ReportLayout layout = reportLayoutFor(QOperatingSystemVersion::current());
    const QByteArray report = updateModeReport(layout);
    std::printf("kind %d, %d bytes: %s", static_cast<int>(layout), static_cast<int>(report.size()),
                report.left(13).toHex(' ').constData());
}
