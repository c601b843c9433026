#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

#include "download/ThreadFileDownloader.h"

namespace {

class MergeTest : public DownloadTest
{
protected:
    QString part(const char *name, const QByteArray &content)
    {
        write(local(name), content);
        return local(name);
    }

    ThreadFileDownloader m_worker{nullptr, nullptr};
};

TEST_F(MergeTest, FilesAreJoinedInListOrderIntoATruncatedTarget)
{
    write(local(), "an earlier and longer target");
    EXPECT_TRUE(m_worker.mergeFiles(
        {part("b", "second"), part("a", "first"), part("c", QByteArray("\0x", 2))}, local()));
    EXPECT_EQ(contentOf(local()), QByteArray("secondfirst\0x", 13));
}

TEST_F(MergeTest, AnEmptyListGivesAnEmptyTarget)
{
    EXPECT_TRUE(m_worker.mergeFiles({}, local()));
    EXPECT_EQ(contentOf(local()), QByteArray());
}

TEST_F(MergeTest, AMissingPartFailsAndTheTargetKeepsWhatWasWritten)
{
    const RecordedDebugStream debug;
    EXPECT_FALSE(m_worker.mergeFiles({part("a", "first"), local("missing"), part("c", "third")}, local()));
    EXPECT_EQ(contentOf(local()), "first");
    EXPECT_EQ(debug.warnings(),
              QStringList{QStringLiteral("Could not open source file for reading: ") + local("missing")});
}

TEST_F(MergeTest, ATargetThatCannotBeOpenedFails)
{
    const RecordedDebugStream debug;
    EXPECT_FALSE(m_worker.mergeFiles({part("a", "first")}, m_folder.path()));
    EXPECT_EQ(debug.warnings(),
              QStringList{QStringLiteral("Could not open target file for writing: ") + m_folder.path()});
}

TEST_F(MergeTest, AFullDiskFails)
{
    EXPECT_FALSE(m_worker.mergeFiles({part("a", "first")}, QStringLiteral("/dev/full")));
}

} // namespace
