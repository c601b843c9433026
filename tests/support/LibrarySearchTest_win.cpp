#include "support/process/LibrarySearch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <windows.h>

#include <gtest/gtest.h>

namespace {

bool canLoad(const QString &name)
{
    const HMODULE library =
        LoadLibraryW(reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(name).utf16()));
    if (library)
        FreeLibrary(library);
    return library != nullptr;
}

class LibrarySearchTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QFile::copy(QStringLiteral(ANY_LIBRARY), m_folder.filePath(m_planted)));
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    }
    ~LibrarySearchTest() override { QDir::setCurrent(m_currentFolder); }

    const QString m_planted = QStringLiteral("quillmarsh-planted.dll");
    const QString m_currentFolder = QDir::currentPath();
    const QTemporaryDir m_folder;
};

TEST_F(LibrarySearchTest, ALibraryInTheWorkingFolderIsNotLoadedByItsName)
{
    ASSERT_TRUE(canLoad(m_planted)) << "the system does not search the working folder in any case";
    LibrarySearch::excludeWorkingFolder();
    EXPECT_FALSE(canLoad(m_planted));
    EXPECT_TRUE(canLoad(m_folder.filePath(m_planted)));
    EXPECT_TRUE(canLoad(QStringLiteral("version.dll")));
}

} // namespace
