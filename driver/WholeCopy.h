#pragma once

#include <QString>

/// Copies a file so that `destination` appears with its whole contents or not at all, whatever happens
/// meanwhile: a half-written driver would be there for good, since what exists is never overwritten. Returns
/// whether it was copied. After a failure nothing is left; what a killed process leaves beside the
/// destination is replaced by the next copy.
bool copyWhole(const QString &source, const QString &destination);
