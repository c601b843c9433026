#pragma once

#include <QStringList>

#include <ostream>

/// The outcome of a fetch from a faulty server.
enum Outcome : unsigned {
    Exact = 1,         ///< the file is exact, and its MD5 matches
    NoAddress = 2,     ///< given up at the manifest, within its 20 s
    NoSize = 4,        ///< given up waiting for the size, within its 20 s
    MergeFailed = 8,   ///< a part was missing
    SumMismatch = 16,  ///< a file whose MD5 does not match
    GoesOnWaiting = 32 ///< waits without a limit, and ends at once when the program shuts down
};

/// A row of the table: a fault, its place, and the correct outcomes.
struct FaultRow
{
    const char *fault;
    const char *place;
    /// The server's fault descriptions. "M" stands for the manifest, "P" for the probe's request and
    /// "S" for the sixth segment's.
    QStringList faults;
    unsigned right;
};

inline void PrintTo(const FaultRow &row, std::ostream *out)
{
    *out << row.fault << " at " << row.place;
}
