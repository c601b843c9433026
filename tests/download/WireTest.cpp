#include "tests/download/SegmentedTest.h"

#include <QElapsedTimer>

namespace {

/// The number of bytes that a download transfers.
class WireTest : public SegmentedTest
{
};

TEST_F(WireTest, ADownloadTransfersTheFileAndTheSlowlyReadBodyOfTheSizeRequest)
{
    serveImage(someBytes(16 * 1024 * 1024));
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(run());
    EXPECT_TRUE(result() == m_content);
    // The bytes that the buffers of both systems and of Qt accept before they block the server, and the
    // headers.
    constexpr qint64 buffers = qint64(640) * 1024;
    const qint64 slowly = 16 * 1024 * (timer.elapsed() / 1000 + 1);
    EXPECT_GE(server().sentBytes(), m_content.size());
    EXPECT_LE(server().sentBytes(), m_content.size() + buffers + slowly);
}

} // namespace
