#pragma once

#include <QString>

/// Validates reports with a JSON schema library.
namespace ReportValidation {

/// Returns how the report in a file violates docs/report.schema.json; empty if it does not.
QString problemsIn(const QString &file);

} // namespace ReportValidation
