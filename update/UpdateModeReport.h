#pragma once

#include <QByteArray>
#include <QOperatingSystemVersion>

/// The layout of the update-mode command in the output report. The value is the kind of command that is
/// logged.
enum class ReportLayout {
    WithReportId = 1, ///< the command begins with report id 4
    Shifted = 2,      ///< Windows 7 and older: the command starts one byte earlier, without the id
};

/// Returns the layout for a system: the shifted one for Windows 7 and older, otherwise the one with the id.
ReportLayout reportLayoutFor(const QOperatingSystemVersion &system);

/// Returns the 513 bytes that restart a device into its bootloader. Byte 0 is the report id that hidapi
/// expects.
QByteArray updateModeReport(ReportLayout layout);
