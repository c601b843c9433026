#pragma once

#include <QString>

#include <ostream>

/// The result of a fetch from a faulty server.
enum class FetchEnds {
    Burned,     ///< the exact image is on the device
    NotFlashed, ///< the controls are enabled again and the device was not changed
    Waits,      ///< it waits without a limit, and the window can be closed
};

/// A faulty server, which is tested with the window program and with quillmarsh-cli.
struct ServerFaultRow
{
    const char *name;
    const char *fault;
    const char *place;
    /// "M" stands for the manifest, "I" for the image.
    const char *spec;
    FetchEnds end;
    /// A line of the log with the reason.
    const char *line;

    /// Returns the fault for a program that uses the manifest from its `nth` request for it.
    QString serverFault(int nth) const
    {
        QString text = QString::fromLatin1(spec);
        text.replace(QLatin1String("=M"), QStringLiteral("=*.json,nth=%1").arg(nth));
        return text.replace(QLatin1String("=I"), QLatin1String("=*.img"));
    }
};

inline void PrintTo(const ServerFaultRow &row, std::ostream *out)
{
    *out << row.fault << " at " << row.place;
}

inline const ServerFaultRow serverFaultRows[] = {
    {"StallAtManifest", "stall", "manifest", "stall:path=M", FetchEnds::NotFlashed,
     "Download failed due to timeout."},
    {"CloseInManifest", "close", "manifest, middle", "close-after:path=M,bytes=30", FetchEnds::NotFlashed,
     "Get File Address Failed!"},
    {"StallAtProbe", "stall", "probe", "stall:path=I,whole=1", FetchEnds::NotFlashed,
     "wait server return timeout!"},
    {"ChunkedProbe", "chunked", "probe", "chunked:path=I,whole=1", FetchEnds::NotFlashed,
     "wait server return timeout!"},
    {"StallInSegment", "stall", "segment, middle", "stall-after:path=I,range=5,bytes=50000", FetchEnds::Waits,
     "Begin Download now..."},
    {"MissingSegment", "404", "segment", "404:path=I,range=5", FetchEnds::Waits, "gave up after 20 retries"},
    {"UnsatisfiableSegment", "416", "segment", "416:path=I,range=5", FetchEnds::NotFlashed,
     "merge Files Failed!"},
    {"ResetInSegment", "reset", "segment, middle", "reset-after:path=I,range=5,bytes=50000",
     FetchEnds::Burned, "merge Files Success"},
    {"ShortSegment", "short-206", "segment, middle", "short-206:path=I,range=5,bytes=50000",
     FetchEnds::Burned, "merge Files Success"},
    {"NoRanges", "ignore-range", "all segments", "ignore-range:path=I", FetchEnds::Burned,
     "merge Files Success"},
    {"BusySegment", "503 twice", "segment", "503:path=I,range=5,times=2", FetchEnds::Burned,
     "merge Files Success"},
    {"ChunkedSegment", "chunked", "segment", "chunked:path=I,range=5", FetchEnds::Burned,
     "merge Files Success"},
    {"NoLengthSegment", "no-length", "segment", "no-length:path=I,range=5", FetchEnds::Burned,
     "merge Files Success"},
    {"SlowSegment", "slow-drip", "segment", "slow-drip:path=I,range=5,bytes=4096,ms=20", FetchEnds::Burned,
     "merge Files Success"},
};
