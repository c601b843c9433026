#pragma once

#include <QStringList>

#include <ostream>

/// How a fetch from a server at fault came out.
enum Outcome : unsigned {
    Exact = 1,         ///< the file, byte for byte, and its sum agrees
    NoAddress = 2,     ///< given up at the manifest, within its 20 s
    NoSize = 4,        ///< given up waiting for the size, within its 20 s
    MergeFailed = 8,   ///< a part was missing
    SumMismatch = 16,  ///< a file that the sum rejects
    GoesOnWaiting = 32 ///< waits without a limit, and ends at once when the program leaves
};

/// One row of the table: what goes wrong where, and which outcomes are right.
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
