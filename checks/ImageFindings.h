#pragma once

#include "checks/Finding.h"
#include "checks/WebLook.h"

#include <QString>

/// Decides on the image that a manifest names.
namespace ImageFindings {

/// The bytes that a server is asked for to see whether it sends parts. Neither the first byte nor the last
/// one: a server that ignores the range is noticed.
constexpr SegmentRange trialPart{1, 10};

struct Image
{
    Finding finding;
    /// In bytes; 0 if it is not known.
    qint64 size = 0;
};

/// Decides from the answers to a request for the whole image and to one for trialPart.
Image image(const QString &what, const WebAnswer &whole, const WebAnswer &part);

/// Decides whether `sum` can be compared with that of a file: 32 lower-case hexadecimal digits.
Finding sum(const QString &what, const QString &sum);

/// Decides whether the fetched image has the promised sum. `fetched` is empty if the image did not arrive.
Finding fetchedSum(const QString &what, const QString &promised, const QString &fetched);

} // namespace ImageFindings
