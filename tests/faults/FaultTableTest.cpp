#include "tests/faults/FaultyFetch.h"

#include <QRegularExpression>

#include <cstdio>

#include <gtest/gtest.h>

namespace {

const char *nameOf(Outcome outcome)
{
    switch (outcome) {
    case Exact:
        return "exact bytes";
    case NoAddress:
        return "no address, within 20 s";
    case NoSize:
        return "no size, within 20 s";
    case MergeFailed:
        return "merge failed";
    case SumMismatch:
        return "sum rejected";
    case GoesOnWaiting:
        return "keeps waiting, shutting down works";
    }
    return "";
}

QStringList specs(const char *first, const char *second = nullptr)
{
    QStringList list{QString::fromLatin1(first)};
    if (second)
        list.append(QString::fromLatin1(second));
    return list;
}

// If a body breaks off, Qt takes it for complete if it sees the end before the error. The correct outcome may
// therefore depend on timing.
const FaultRow manifestRows[] = {
    {"refuse", "manifest", specs("refuse"), NoAddress},
    {"stall", "manifest", specs("stall:path=M"), NoAddress},
    {"stall", "manifest, first byte", specs("stall-after:path=M,bytes=0"), NoAddress},
    {"stall", "manifest, middle", specs("stall-after:path=M,bytes=60"), NoAddress},
    {"stall", "manifest, after all", specs("stall-after:path=M,bytes=9999"), Exact},
    {"reset", "manifest, first byte", specs("reset-after:path=M,bytes=0"), NoAddress},
    {"reset", "manifest, middle", specs("reset-after:path=M,bytes=60"), NoAddress},
    {"reset", "manifest, after all", specs("reset-after:path=M,bytes=9999"), Exact},
    {"close", "manifest, first byte", specs("close-after:path=M,bytes=0"), NoAddress},
    {"close", "manifest, middle", specs("close-after:path=M,bytes=60"), NoAddress},
    {"close", "manifest, after all", specs("close-after:path=M,bytes=9999"), Exact},
    {"short-206", "manifest", specs("short-206:path=M,bytes=10"), Exact},
    {"ignore-range", "manifest", specs("ignore-range:path=M"), Exact},
    {"redirect", "manifest", specs("redirect:path=M,to=/elsewhere.json"), Exact},
    {"redirect to itself", "manifest", specs("redirect:path=M,to=/manifest.json"), NoAddress},
    {"redirect to nothing", "manifest", specs("redirect:path=M,to=/missing"), NoAddress},
    {"404", "manifest", specs("404:path=M"), NoAddress},
    {"416", "manifest", specs("416:path=M"), NoAddress},
    {"503", "manifest", specs("503:path=M"), NoAddress},
    {"chunked", "manifest", specs("chunked:path=M"), Exact},
    {"slow-drip", "manifest", specs("slow-drip:path=M,bytes=20"), Exact},
    {"no-length", "manifest", specs("no-length:path=M"), Exact},
    {"no-length and close", "manifest, middle", specs("no-length:path=M", "close-after:path=M,bytes=60"),
     NoAddress},
};

// The probe only needs the headers of an answer.
const FaultRow probeRows[] = {
    {"refuse", "probe", specs("refuse:nth=2"), NoSize},
    {"refuse once", "probe", specs("refuse:nth=2,times=1"), Exact},
    {"stall", "probe", specs("stall:path=P"), NoSize},
    {"stall", "probe, first byte", specs("stall-after:path=P,bytes=0"), Exact},
    {"stall", "probe, middle", specs("stall-after:path=P,bytes=100000"), Exact},
    {"stall", "probe, last byte", specs("stall-after:path=P,bytes=200002"), Exact},
    {"reset", "probe, first byte", specs("reset-after:path=P,bytes=0"), Exact},
    {"reset", "probe, middle", specs("reset-after:path=P,bytes=100000"), Exact},
    {"reset", "probe, last byte", specs("reset-after:path=P,bytes=200002"), Exact},
    {"close", "probe, first byte", specs("close-after:path=P,bytes=0"), Exact},
    {"close", "probe, middle", specs("close-after:path=P,bytes=100000"), Exact},
    {"close", "probe, last byte", specs("close-after:path=P,bytes=200002"), Exact},
    {"short-206", "probe", specs("short-206:path=P,bytes=10"), Exact},
    {"ignore-range", "probe", specs("ignore-range:path=P"), Exact},
    {"redirect", "probe", specs("redirect:path=P,to=/elsewhere.img"), Exact},
    {"redirect to itself", "probe", specs("redirect:path=P,to=/m1.img"), NoSize},
    {"redirect to nothing", "probe", specs("redirect:path=P,to=/missing"), NoSize},
    {"404", "probe", specs("404:path=P"), NoSize},
    {"416", "probe", specs("416:path=P"), NoSize},
    {"503", "probe", specs("503:path=P"), NoSize},
    {"503 three times", "probe", specs("503:path=P,times=3"), Exact},
    {"chunked", "probe", specs("chunked:path=P"), NoSize},
    {"slow-drip", "probe", specs("slow-drip:path=P"), Exact},
    {"no-length", "probe", specs("no-length:path=P"), NoSize},
    {"a wrong length", "probe", specs("header:path=P,name=Content-Length,value=150000"), SumMismatch},
};

const FaultRow segmentRows[] = {
    {"refuse", "all segments", specs("refuse:nth=3"), GoesOnWaiting},
    {"refuse once", "one segment", specs("refuse:nth=5,times=1"), Exact},
    {"stall", "segment", specs("stall:path=S"), GoesOnWaiting},
    {"stall", "segment, first byte", specs("stall-after:path=S,bytes=0"), GoesOnWaiting},
    {"stall", "segment, middle", specs("stall-after:path=S,bytes=10000"), GoesOnWaiting},
    {"stall", "segment, last byte", specs("stall-after:path=S,bytes=19999"), GoesOnWaiting},
    {"reset once", "segment, first byte", specs("reset-after:path=S,bytes=0,times=1"),
     Exact | MergeFailed | SumMismatch},
    {"reset once", "segment, middle", specs("reset-after:path=S,bytes=10000,times=1"), Exact},
    {"reset once", "segment, last byte", specs("reset-after:path=S,bytes=19999,times=1"), Exact},
    {"reset", "segment, first byte", specs("reset-after:path=S,bytes=0"),
     GoesOnWaiting | MergeFailed | SumMismatch},
    {"reset", "segment, middle", specs("reset-after:path=S,bytes=10000"), Exact},
    {"reset", "segment, last byte", specs("reset-after:path=S,bytes=19999"), Exact},
    {"reset", "first segment, middle", specs("reset-after:path=/m1.img,range=0,bytes=10000"), Exact},
    {"reset", "last segment, middle", specs("reset-after:path=/m1.img,range=9,bytes=10000"), Exact},
    {"close once", "segment, first byte", specs("close-after:path=S,bytes=0,times=1"),
     Exact | MergeFailed | SumMismatch},
    {"close", "segment, middle", specs("close-after:path=S,bytes=10000"), Exact},
    {"close", "segment, last byte", specs("close-after:path=S,bytes=19999"), Exact},
    {"short-206", "segment, first byte", specs("short-206:path=S,bytes=0"), MergeFailed},
    {"short-206", "segment, middle", specs("short-206:path=S,bytes=10000"), Exact},
    {"short-206", "segment, last byte", specs("short-206:path=S,bytes=19999"), Exact},
    {"short-206 too often", "segment", specs("short-206:path=S,bytes=100"), GoesOnWaiting},
    {"ignore-range", "segment", specs("ignore-range:path=S"), Exact},
    {"ignore-range", "all segments", specs("ignore-range:path=/m1.img"), Exact},
    {"ignore-range and reset", "segment, middle",
     specs("ignore-range:path=S", "reset-after:path=S,bytes=110000,times=1"), Exact},
    {"redirect", "segment", specs("redirect:path=S,to=/elsewhere.img"), Exact},
    {"redirect to itself", "segment", specs("redirect:path=S,to=/m1.img"), GoesOnWaiting},
    {"404", "segment", specs("404:path=S"), GoesOnWaiting},
    {"404", "all segments", specs("404:path=/m1.img,nth=2"), GoesOnWaiting},
    {"416", "segment", specs("416:path=S"), MergeFailed},
    {"416 after a reset", "segment, middle",
     specs("reset-after:path=S,bytes=10000,times=1", "416:path=S,nth=2"), SumMismatch},
    {"503", "segment", specs("503:path=S"), GoesOnWaiting},
    {"503 three times", "segment", specs("503:path=S,times=3"), Exact},
    {"503 three times", "first segment", specs("503:path=/m1.img,range=0,times=3"), Exact},
    {"chunked", "segment", specs("chunked:path=S"), Exact},
    {"slow-drip", "segment", specs("slow-drip:path=S"), Exact},
    {"no-length", "segment", specs("no-length:path=S"), Exact},
    {"no-length and close", "segment, middle",
     specs("no-length:path=S", "close-after:path=S,bytes=10000,times=1"), Exact},
    {"another part", "segment", specs("header:path=S,name=Content-Range,value=bytes 120000-139999/200003"),
     GoesOnWaiting},
};

class FaultTableTest : public testing::TestWithParam<FaultRow>
{
};

TEST_P(FaultTableTest, ExactBytesOrTheRightFailure)
{
    const FaultRow &row = GetParam();
    FaultyFetch fetch(row.faults);
    const Outcome outcome = fetch.run(row.right);
    std::printf("fault: %s | %s | %s\n", row.fault, row.place, nameOf(outcome));
    EXPECT_NE(outcome & row.right, 0U) << nameOf(outcome) << '\n' << fetch.story().toStdString();
    EXPECT_LE(fetch.longestWait(), 20200);
}

std::string nameOfRow(const testing::TestParamInfo<FaultRow> &info)
{
    QString name =
        QString::fromLatin1(info.param.fault) + QLatin1Char('_') + QString::fromLatin1(info.param.place);
    name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]+")), QStringLiteral("_"));
    return name.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Manifest, FaultTableTest, testing::ValuesIn(manifestRows), nameOfRow);
INSTANTIATE_TEST_SUITE_P(Probe, FaultTableTest, testing::ValuesIn(probeRows), nameOfRow);
INSTANTIATE_TEST_SUITE_P(Segment, FaultTableTest, testing::ValuesIn(segmentRows), nameOfRow);

} // namespace
