#pragma once

#include "checks/Finding.h"
#include "checks/WebRequest.h"

#include <QString>

/// Findings about the image that a manifest names.
namespace ImageFindings {

/// The part that is requested to find out whether a server sends parts. It begins after the first byte and
/// ends before the last one, so that a server that ignores the range is noticed.
constexpr SegmentRange trialPart{1, 10};

struct Image
{
    Finding finding;
    /// In bytes; 0 if it is not known.
    qint64 size = 0;
};

/// Judges the answers to a request for the whole image and to one for trialPart.
Image image(const QString &what, const WebAnswer &whole, const WebAnswer &part);

/// Judges whether `sum` has the form that can be compared with a file's sum: 32 lower-case hexadecimal
/// digits.
Finding sum(const QString &what, const QString &sum);

/// Judges whether the fetched image has the promised sum. `fetched` is empty if the image did not arrive.
Finding fetchedSum(const QString &what, const QString &promised, const QString &fetched);

} // namespace ImageFindings
