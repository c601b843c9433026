#include "support/log/PlainFile.h"

#include "simulator/files/WholeFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class PlainFileTest : public testing::Test
{
protected:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    static QByteArray encoded(const QString &path) { return QFile::encodeName(path); }
    bool canOpen(const char *name) const
    {
        QFile file(path(name));
        return PlainFile::openToAppend(file);
    }

    const QTemporaryDir m_folder;
};

TEST_F(PlainFileTest, TextIsAppended)
{
    for (const char *text : {"one\n", "two\n"}) {
        QFile file(path("log"));
        ASSERT_TRUE(PlainFile::openToAppend(file));
        EXPECT_EQ(file.write(text), 4);
    }
    EXPECT_EQ(WholeFile::read(path("log")), "one\ntwo\n");
}

TEST_F(PlainFileTest, ANamedPipeIsRefusedWhetherOrNotSomebodyReads)
{
    ASSERT_EQ(mkfifo(encoded(path("pipe")).constData(), 0600), 0);
    EXPECT_FALSE(canOpen("pipe"));
    const int reader = open(encoded(path("pipe")).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(canOpen("pipe"));
    close(reader);
}

TEST_F(PlainFileTest, LinksAreFollowed)
{
    ASSERT_TRUE(WholeFile::write(path("file")));
    ASSERT_EQ(mkfifo(encoded(path("pipe")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path("file"), path("to a file")));
    ASSERT_TRUE(QFile::link(path("pipe"), path("to a pipe")));
    EXPECT_TRUE(canOpen("to a file"));
    EXPECT_FALSE(canOpen("to a pipe"));
}

TEST_F(PlainFileTest, FoldersAndDevicesAreRefused)
{
    ASSERT_EQ(mkdir(encoded(path("folder")).constData(), 0700), 0);
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), path("null")));
    EXPECT_FALSE(canOpen("folder"));
    EXPECT_FALSE(canOpen("null"));
}

} // namespace
