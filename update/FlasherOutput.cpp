#include "update/FlasherOutput.h"

namespace {

struct PartitionMarker
{
    QLatin1String text;
    int percent;
};

// If a chunk contains several of them, the first one in this list counts.
const PartitionMarker partitionMarkers[] = {
    {QLatin1String("Upgrade fwc: image.target.spl"), 16},
    {QLatin1String("Upgrade fwc: image.target.env"), 32},
    {QLatin1String("Upgrade fwc: image.target.os"), 48},
    {QLatin1String("Upgrade fwc: image.target.rodata"), 64},
    {QLatin1String("Upgrade fwc: image.target.data"), 80},
};

std::optional<BurnResult> verdictIn(const QByteArray &text)
{
    if (text.contains("Open upg device failed"))
        return BurnDeviceNotReachable;
    if (text.contains("Burn") && text.contains("successfully!"))
        return BurnSucceeded;
    return std::nullopt;
}

} // namespace

FlasherChunk readFlasherChunk(const QString &text)
{
    FlasherChunk chunk;
    chunk.result = verdictIn(text.toUtf8());
    if (chunk.result == BurnDeviceNotReachable)
        return chunk;
    if (chunk.result == BurnSucceeded)
        chunk.progress.append(100);
    // Intentional: after the success line, so that a chunk with both shows the marker's value.
    for (const PartitionMarker &marker : partitionMarkers) {
        if (text.contains(marker.text)) {
            chunk.progress.append(marker.percent);
            break;
        }
    }
    return chunk;
}

void FlasherLines::feed(const QByteArray &chunk)
{
    constexpr int carriedBytes = 64 * 1024;

    m_unfinished += chunk;
    int lineStart = 0;
    for (int end = m_unfinished.indexOf('\n'); end != -1; end = m_unfinished.indexOf('\n', lineStart)) {
        if (const auto verdict = verdictIn(m_unfinished.mid(lineStart, end - lineStart)))
            m_verdict = verdict;
        lineStart = end + 1;
    }
    m_unfinished.remove(0, lineStart);
    if (m_unfinished.size() > carriedBytes)
        m_unfinished = m_unfinished.right(carriedBytes);
}

std::optional<BurnResult> FlasherLines::verdict() const
{
    const auto last = verdictIn(m_unfinished);
    return last ? last : m_verdict;
}
