#pragma once

#include <QByteArray>
#include <QOperatingSystemVersion>

/// How the update-mode command is laid out in the output report. The number is the command kind
/// that the log shows.
enum class ReportLayout {
    WithReportId = 1, ///< report id 4 leads the command
    Shifted = 2,      ///< Windows 7 and older: the command starts one byte earlier, without the id
};

/// Only Windows 7 and older takes the shifted layout; every other system takes the one with the id.
ReportLayout reportLayoutFor(const QOperatingSystemVersion &system);

/// The 513 bytes that send a device into its bootloader; byte 0 is the report id as hidapi expects it.
QByteArray updateModeReport(ReportLayout layout);
