#include "tests/fuzz/Fuzz.h"

#include "download/HttpAnswer.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray value = Fuzz::bytes(data, size);
    const auto total = HttpAnswer::totalOfContentRange(value);
    Fuzz::require(total.has_value() == (value.count('/') == 1), "there is a total behind the one slash");
    const auto first = HttpAnswer::firstOfContentRange(value);
    Fuzz::require(!first || *first >= 0, "no body starts before its file");
    Fuzz::require(HttpAnswer::firstByteOfBody(200, value, 7) == 0, "a whole body starts at the file's start");
    const qint64 start = HttpAnswer::firstByteOfBody(206, value, 7);
    Fuzz::require(start == first.value_or(7),
                  "a part starts where its head says, else where it was asked for");
    return 0;
}
