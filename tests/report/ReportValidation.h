#pragma once

#include <QString>

/// Validates reports with a JSON schema library.
namespace ReportValidation {

/// Returns what is wrong with the report in a file according to docs/report.schema.json; empty if nothing is.
QString complaint(const QString &file);

} // namespace ReportValidation
