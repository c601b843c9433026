#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// What a run of a flasher came to.
enum BurnResult : int {
    BurnSucceeded = 0,
    BurnWithoutSuccessLine = 1,
    BurnNotStarted = -1,
    BurnDeviceNotReachable = -3, ///< worth another try
};

/// What one chunk of a flasher's standard output means. A chunk is whatever one read returned: it
/// may hold several lines or a part of one.
struct FlasherChunk
{
    /// Progress values in percent, in the order in which they are to be shown.
    QVector<int> progress;
    std::optional<BurnResult> result;
};

FlasherChunk readFlasherChunk(const QString &text);

/// Puts whole lines together across chunks, for the one thing that the chunk rules would miss: a
/// verdict that a read boundary cut in two. Carries at most 64 KiB of an unfinished line.
class FlasherLines
{
public:
    void feed(const QByteArray &chunk);
    /// The verdict of the last line that held one, the unfinished last line included.
    std::optional<BurnResult> verdict() const;

private:
    QByteArray m_unfinished;
    std::optional<BurnResult> m_verdict;
};
