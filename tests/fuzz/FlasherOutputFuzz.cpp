#include "tests/fuzz/Fuzz.h"

#include "update/FlasherOutput.h"

namespace {

constexpr int carriedBytes = 64 * 1024;

std::optional<BurnResult> verdictOf(const QByteArray &output, int chunkSize)
{
    FlasherLines lines;
    for (int at = 0; at < output.size(); at += chunkSize)
        lines.feed(output.mid(at, chunkSize));
    return lines.verdict();
}

bool isProgress(int percent)
{
    return percent == 16 || percent == 32 || percent == 48 || percent == 64 || percent == 80 ||
           percent == 100;
}

} // namespace

// The first byte determines how the output is split into chunks; the rest is the output.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const int chunkSize = data[0] + 1;
    const QByteArray output = Fuzz::bytes(data + 1, size - 1);

    const FlasherChunk chunk = readFlasherChunk(QString::fromUtf8(output.constData(), output.size()));
    for (const int percent : chunk.progress)
        Fuzz::require(isProgress(percent), "progress is one of the six values");
    Fuzz::require(chunk.progress.size() <= 2, "a chunk shows two values at most");
    if (chunk.result == BurnDeviceNotReachable)
        Fuzz::require(chunk.progress.isEmpty(), "a device that is not reachable makes no progress");
    if (output.size() < carriedBytes)
        Fuzz::require(verdictOf(output, chunkSize) == verdictOf(output, output.size() + 1),
                      "the lines' verdict does not depend on the chunks");
    return 0;
}
