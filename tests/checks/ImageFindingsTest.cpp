#include "checks/ImageFindings.h"

#include <gtest/gtest.h>

namespace {

using Verdict = Finding::Verdict;

WebAnswer wholeOf(std::optional<qint64> length, int status = 200, const char *problem = "")
{
    return {status, QLatin1String(problem), {}, length, {}};
}

WebAnswer partOf(const char *range, int status = 206, const char *problem = "")
{
    return {status, QLatin1String(problem), range, std::nullopt, {}};
}

TEST(ImageFindingsTest, AnImageMustHaveASizeAndBeSentInTheRequestedParts)
{
    const qint64 limit = qint64{1} << 31;
    const struct
    {
        const char *name;
        WebAnswer whole;
        WebAnswer part;
        Verdict verdict;
        qint64 size;
    } cases[] = {
        {"right", wholeOf(5000), partOf("bytes 1-9/5000"), Verdict::Ok, 5000},
        {"smallest", wholeOf(10), partOf("bytes 1-9/10"), Verdict::Ok, 10},
        {"too small", wholeOf(9), partOf("bytes 1-8/9"), Verdict::Problem, 9},
        {"empty", wholeOf(0), partOf("", 416, "status 416"), Verdict::Problem, 0},
        {"largest", wholeOf(limit - 1), partOf("bytes 1-9/2147483647"), Verdict::Ok, limit - 1},
        {"too large", wholeOf(limit), partOf("bytes 1-9/2147483648"), Verdict::Problem, limit},
        {"no answer", wholeOf({}, 0, "Connection refused"), {}, Verdict::Problem, 0},
        {"not there", wholeOf(13, 404, "status 404"), {}, Verdict::Problem, 0},
        {"error page", wholeOf(13, 503), {}, Verdict::Problem, 0},
        {"no length", wholeOf({}), partOf("bytes 1-9/5000"), Verdict::Problem, 0},
        {"whole for a part", wholeOf(5000), partOf("", 200), Verdict::Warning, 5000},
        {"no parts", wholeOf(5000), partOf("", 416, "status 416"), Verdict::Problem, 5000},
        {"no Content-Range", wholeOf(5000), partOf(""), Verdict::Problem, 5000},
        {"another start", wholeOf(5000), partOf("bytes 0-9/5000"), Verdict::Problem, 5000},
        {"another end", wholeOf(5000), partOf("bytes 1-8/5000"), Verdict::Problem, 5000},
        {"another size", wholeOf(5000), partOf("bytes 1-9/5001"), Verdict::Problem, 5000},
        {"size unknown", wholeOf(5000), partOf("bytes 1-9/*"), Verdict::Problem, 5000},
        {"another unit", wholeOf(5000), partOf("items 1-9/5000"), Verdict::Problem, 5000},
    };
    for (const auto &c : cases) {
        const ImageFindings::Image image = ImageFindings::image(QStringLiteral("image"), c.whole, c.part);
        EXPECT_EQ(image.finding.verdict, c.verdict) << c.name << ": " << qPrintable(image.finding.text);
        EXPECT_EQ(image.size, c.size) << c.name;
    }
}

TEST(ImageFindingsTest, ASumMustHave32LowerCaseHexadecimalDigits)
{
    const struct
    {
        const char *sum;
        Verdict verdict;
    } cases[] = {
        {"0123456789abcdef0123456789abcdef", Verdict::Ok},
        {"0123456789ABCDEF0123456789abcdef", Verdict::Problem},
        {"0123456789abcdef0123456789abcde", Verdict::Problem},
        {"0123456789abcdef0123456789abcdef0", Verdict::Problem},
        {"0123456789abcdef0123456789abcdeg", Verdict::Problem},
        {"0123456789abcdef0123456789abcdef\n", Verdict::Problem},
        {"", Verdict::Problem},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ImageFindings::sum(QStringLiteral("s"), QLatin1String(c.sum)).verdict, c.verdict) << c.sum;
    EXPECT_TRUE(ImageFindings::sum(QStringLiteral("s"), QStringLiteral("0123456789ABCDEF0123456789abcdef"))
                    .text.contains(QStringLiteral("capital letters")));
}

TEST(ImageFindingsTest, AFetchedImageMustHaveThePromisedSum)
{
    const QString what = QStringLiteral("s");
    const QString sum = QStringLiteral("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(ImageFindings::fetchedSum(what, sum, sum).verdict, Verdict::Ok);
    EXPECT_EQ(ImageFindings::fetchedSum(what, sum.toUpper(), sum).verdict, Verdict::Problem);
    EXPECT_EQ(ImageFindings::fetchedSum(what, QString(), QString()).verdict, Verdict::Problem);
}

} // namespace
