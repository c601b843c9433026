#include "update/UpdateModeReport.h"

ReportLayout reportLayoutFor(const QOperatingSystemVersion &system)
{
    const bool oldWindows =
        system.type() == QOperatingSystemVersion::Windows && !(system > QOperatingSystemVersion::Windows7);
    return oldWindows ? ReportLayout::Shifted : ReportLayout::WithReportId;
}

QByteArray updateModeReport(ReportLayout layout)
{
    constexpr int reportSize = 513;
    constexpr char reportId = 0x04;

    QByteArray report;
    if (layout == ReportLayout::WithReportId)
        report.append(reportId);
    report.append("CRT").append(2, '\0').append("APPNEW");
    return report.append(reportSize - report.size(), '\0');
}
