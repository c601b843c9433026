#include "driver/WholeCopy.h"

#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>

namespace {

/// Limits the size of files of this process during its lifetime. Writing beyond it fails as on a full disk.
class SmallFiles
{
public:
    explicit SmallFiles(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY(SmallFiles)

private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};

TEST(WholeCopyOnLinuxTest, ADiskThatFillsUpLeavesNothingBehind)
{
    const QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("from"));
    ASSERT_TRUE(WholeFile::write(source, QByteArray(1024 * 1024, 'x')));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("to")));
    bool copied = true;
    {
        const SmallFiles limit(400 * 1024);
        copied = copyWhole(source, folder.filePath(QStringLiteral("to/file")));
    }
    EXPECT_FALSE(copied);
    EXPECT_TRUE(QDir(folder.filePath(QStringLiteral("to"))).isEmpty());
}

} // namespace
