#include "tests/common/RecordedDebugStream.h"
#include "tests/download/SegmentedTest.h"

namespace {

class MergeFilesTest : public SegmentedTest
{
protected:
    const QString m_target = local("target");
    RecordedDebugStream m_messages;
};

TEST_F(MergeFilesTest, PartsAreJoinedInTheOrderOfTheList)
{
    write(local("b"), "second");
    write(local("a"), "first");
    write(local("empty"), "");
    EXPECT_TRUE(m_worker.mergeFiles({local("a"), local("empty"), local("b")}, m_target));
    EXPECT_EQ(read(m_target), "firstsecond");
    EXPECT_EQ(read(local("a")), "first") << "the parts are left alone";
}

TEST_F(MergeFilesTest, LargePartsAreJoinedWhole)
{
    QByteArray large;
    while (large.size() < 3000001)
        large += QByteArray::number(large.size());
    write(local("a"), large);
    write(local("b"), large.left(262144));
    EXPECT_TRUE(m_worker.mergeFiles({local("a"), local("b"), local("a")}, m_target));
    EXPECT_EQ(read(m_target), large + large.left(262144) + large);
}

TEST_F(MergeFilesTest, AnOlderTargetIsTruncated)
{
    write(m_target, QByteArray(100, 'x'));
    write(local("a"), "new");
    EXPECT_TRUE(m_worker.mergeFiles({local("a")}, m_target));
    EXPECT_EQ(read(m_target), "new");
}

TEST_F(MergeFilesTest, AnEmptyListGivesAnEmptyTarget)
{
    EXPECT_TRUE(m_worker.mergeFiles({}, m_target));
    EXPECT_TRUE(QFile::exists(m_target));
    EXPECT_TRUE(read(m_target).isEmpty());
}

TEST_F(MergeFilesTest, ATargetThatCannotBeOpenedFails)
{
    const QString target = local("missing/target");
    EXPECT_FALSE(m_worker.mergeFiles({}, target));
    EXPECT_EQ(m_messages.lines(QtWarningMsg),
              QStringList{QStringLiteral("Could not open target file for writing: ") + target});
}

TEST_F(MergeFilesTest, APartThatCannotBeOpenedFailsAndTheTargetKeepsWhatItHas)
{
    write(local("a"), "first");
    EXPECT_FALSE(m_worker.mergeFiles({local("a"), local("none"), local("a")}, m_target));
    EXPECT_EQ(read(m_target), "first");
    EXPECT_EQ(m_messages.lines(QtWarningMsg),
              QStringList{QStringLiteral("Could not open source file for reading: ") + local("none")});
}

} // namespace
