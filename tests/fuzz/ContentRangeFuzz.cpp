#include "tests/fuzz/Fuzz.h"

#include "download/HttpAnswer.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray value = Fuzz::bytes(data, size);
    const auto total = HttpAnswer::totalOfContentRange(value);
    Fuzz::require(total.has_value() == (value.count('/') == 1), "there is a total behind the one slash");
    const auto first = HttpAnswer::firstOfContentRange(value);
    Fuzz::require(!first || *first >= 0, "no body starts before its file");
    return 0;
}
