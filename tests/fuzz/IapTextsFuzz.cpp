#include "tests/fuzz/Fuzz.h"

#include "iap/IapAnswer.h"
#include "iap/IapOutput.h"

namespace {

void checkEntries(const QStringList &entries, const QString &text, const char *beginning)
{
    Fuzz::require(entries.size() <= text.count(QLatin1String(beginning)), "an entry has a beginning");
    Fuzz::require(entries.size() <= text.count(QLatin1Char(';')), "an entry has an end");
    for (const QString &entry : entries) {
        Fuzz::require(!entry.contains(QLatin1Char(';')), "an entry ends at the first semicolon");
        Fuzz::require(entry == entry.trimmed(), "an entry has no blanks around it");
        Fuzz::require(text.contains(entry), "an entry was in the answer");
    }
}

} // namespace

// The input is parsed both as an answer and as a chunk of output.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = Fuzz::bytes(data, size);
    const QString text = QString::fromUtf8(input.constData(), input.size()).trimmed();

    const IapAnswer answer = readIapAnswer(text);
    checkEntries(answer.comPorts, text, "COM:");
    checkEntries(answer.usbDevices, text, "device:");

    const IapChunk chunk = readIapChunk(text);
    Fuzz::require(!chunk.progress || *chunk.progress >= 0, "progress is not negative");
    Fuzz::require(!chunk.progress || text.contains(QLatin1String("SetProgress:")), "progress was reported");
    Fuzz::require(chunk.finished == (chunk.progress == 100), "100 and nothing else is the end");
    Fuzz::require(!(chunk.progress && chunk.failed), "a chunk with progress is no failure");
    if (chunk.failed)
        Fuzz::require(text.contains(QLatin1String("no usb iap device!"), Qt::CaseInsensitive),
                      "a failure was reported");
    return 0;
}
