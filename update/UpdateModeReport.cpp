#include "update/UpdateModeReport.h"

#include <utility>

ReportLayout reportLayoutFor(const QOperatingSystemVersion &system)
{
    // Not compared as a whole: a running system carries its build number, which would make every
    // real Windows 7 newer than the toolkit's constant.
    const auto release = std::make_pair(system.majorVersion(), system.minorVersion());
    const bool oldWindows =
        system.type() == QOperatingSystemVersion::Windows && release <= std::make_pair(6, 1);
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
