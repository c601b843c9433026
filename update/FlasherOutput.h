#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// The result of a run of a flasher.
enum BurnResult : int {
    BurnSucceeded = 0,
    BurnWithoutSuccessLine = 1,
    BurnNotStarted = -1,
    BurnDeviceNotReachable = -3, ///< the flasher is run again
};

/// The meaning of one chunk of a flasher's standard output. A chunk is the result of one read: several lines
/// or a part of one.
struct FlasherChunk
{
    /// The progress values in percent, in the order in which they are shown.
    QVector<int> progress;
    std::optional<BurnResult> result;
};

/// Parses one chunk.
FlasherChunk readFlasherChunk(const QString &text);

/// Joins the chunks of a flasher's output to lines and finds verdicts in them, because readFlasherChunk()
/// misses a verdict that is split between two chunks. Keeps at most 64 KiB of an unfinished line.
class FlasherLines
{
public:
    void feed(const QByteArray &chunk);
    /// Returns the verdict of the last line that contains one; the unfinished last line counts.
    std::optional<BurnResult> verdict() const;

private:
    QByteArray m_unfinished;
    std::optional<BurnResult> m_verdict;
};
