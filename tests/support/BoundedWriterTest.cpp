#include "support/log/BoundedWriter.h"
#include "simulator/files/WholeFile.h"
#include "simulator/time/RunningTime.h"
#include "support/process/BrokenPipes.h"
#include "tests/common/OpenPipe.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

class BoundedWriterTest : public testing::Test
{
protected:
    void SetUp() override { ignoreBrokenPipes(); }
};

TEST_F(BoundedWriterTest, WhatIsWrittenArrivesInOrder)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    BoundedWriter writer(file.handle(), 1000);
    writer.write("one ");
    writer.write("two");
    EXPECT_TRUE(writer.flush(eventLimitMs));
    EXPECT_EQ(WholeFile::read(file.fileName()), "one two");
}

TEST_F(BoundedWriterTest, APipeThatNobodyReadsNeverBlocksTheWriter)
{
    int ends[2];
    ASSERT_TRUE(openPipe(ends));
    const RunningTimer timer;
    {
        BoundedWriter writer(ends[1], 1024 * 1024);
        for (int i = 0; i < 10000; ++i)
            writer.write(QByteArray(1000, 'x'));
        EXPECT_FALSE(writer.flush(50));
    }
    EXPECT_LT(timer.elapsed(), 5000);
    close(ends[0]);
}

TEST_F(BoundedWriterTest, AGapIsNotedOnceThereIsSpaceAgain)
{
    int ends[2];
    ASSERT_TRUE(openPipe(ends));
    BoundedWriter writer(ends[1], 1000);
    writer.write(QByteArray(1001, 'x'));
    writer.write("after\n");
    ASSERT_TRUE(writer.flush(eventLimitMs));
    char text[200];
    const auto count = read(ends[0], text, sizeof text);
    EXPECT_EQ(QByteArray(text, static_cast<int>(count)), "... 1001 bytes of diagnostics dropped\nafter\n");
    close(ends[0]);
    close(ends[1]);
}

TEST_F(BoundedWriterTest, APipeWhoseReaderWentAwayDoesNotEndTheProgram)
{
    int ends[2];
    ASSERT_TRUE(openPipe(ends));
    close(ends[0]);
    BoundedWriter writer(ends[1], 1000);
    writer.write("into the void");
    EXPECT_TRUE(writer.flush(eventLimitMs));
    close(ends[1]);
}

} // namespace
