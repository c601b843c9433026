#pragma once

#include <QByteArray>
#include <QString>

/// Validates the events of --json with a JSON schema library.
namespace EventValidation {

/// Returns how these lines violate docs/cli-events.schema.json; empty if they do not.
QString problemsIn(const QByteArray &lines);

} // namespace EventValidation
