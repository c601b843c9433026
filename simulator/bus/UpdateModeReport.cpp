#include "simulator/bus/UpdateModeReport.h"

QByteArray updateModeReport(ReportAnswer::Layout layout)
{
    constexpr int reportSize = 513;
    const QByteArray command = QByteArrayLiteral("\x43\x52\x54\x00\x00\x41\x50\x50\x4E\x45\x57");
    QByteArray report = layout == ReportAnswer::Layout::A ? '\x04' + command : command;
    return report.append(reportSize - report.size(), '\0');
}
