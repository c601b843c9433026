#pragma once

#include <QByteArray>
#include <QString>

/// Validates the events of --json with a JSON schema library.
namespace EventValidation {

/// Returns what is wrong with these lines according to docs/cli-events.schema.json; empty if nothing is.
QString problemsIn(const QByteArray &lines);

} // namespace EventValidation
