#include "support/process/SystemTool.h"

#include "simulator/files/WholeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString planted = QStringLiteral("quillmarsh-planted");
const QString plantedFile = planted + QStringLiteral(".exe");

class SystemToolOnWindowsTest : public testing::Test
{
protected:
    ~SystemToolOnWindowsTest() override
    {
        SystemTool::setFolderForTests(QString());
        QDir::setCurrent(m_currentFolder);
        qputenv("PATH", m_path);
        QFile::remove(inProgramFolder());
    }

    static QString inProgramFolder()
    {
        return QCoreApplication::applicationDirPath() + QLatin1Char('/') + plantedFile;
    }
    void searchIn(const QStringList &folders)
    {
        qputenv("PATH", QDir::toNativeSeparators(folders.join(QLatin1Char(';'))).toLocal8Bit());
    }

    const QByteArray m_path = qgetenv("PATH");
    const QString m_currentFolder = QDir::currentPath();
    const QTemporaryDir m_folder;
};

TEST_F(SystemToolOnWindowsTest, TaskkillIsAlwaysTheOneOfTheSystem)
{
    ASSERT_TRUE(WholeFile::write(m_folder.filePath(QStringLiteral("taskkill.exe"))));
    QDir::setCurrent(m_folder.path());
    searchIn({m_folder.path()});
    const QString found = SystemTool::path(QStringLiteral("taskkill"));
    EXPECT_TRUE(found.endsWith(QStringLiteral("/system32/taskkill.exe"), Qt::CaseInsensitive))
        << found.toStdString();
}

TEST_F(SystemToolOnWindowsTest, AToolInTheProgramsFolderOrTheWorkingFolderIsNotFound)
{
    ASSERT_TRUE(WholeFile::write(inProgramFolder()));
    ASSERT_TRUE(WholeFile::write(m_folder.filePath(plantedFile)));
    QDir::setCurrent(m_folder.path());
    searchIn({QStringLiteral("."), m_folder.path(), QCoreApplication::applicationDirPath()});
    EXPECT_EQ(SystemTool::path(planted), QString());
}

TEST_F(SystemToolOnWindowsTest, AToolInAnotherFolderOfTheSearchPathIsFound)
{
    ASSERT_TRUE(WholeFile::write(m_folder.filePath(plantedFile)));
    searchIn({QStringLiteral("C:\\none"), m_folder.path()});
    EXPECT_EQ(SystemTool::path(planted), m_folder.filePath(plantedFile));
}

TEST_F(SystemToolOnWindowsTest, WithAFolderForTestsNoToolOfTheSystemIsFound)
{
    ASSERT_NE(SystemTool::path(QStringLiteral("taskkill")), QString());
    SystemTool::setFolderForTests(m_folder.path());
    EXPECT_EQ(SystemTool::path(QStringLiteral("taskkill")), QString())
        << "it would end the processes of others";
}

TEST_F(SystemToolOnWindowsTest, TheFolderForTestsReplacesTheSystemFolder)
{
    ASSERT_TRUE(WholeFile::write(m_folder.filePath(QStringLiteral("taskkill.exe"))));
    SystemTool::setFolderForTests(m_folder.path());
    EXPECT_EQ(SystemTool::path(QStringLiteral("taskkill")),
              m_folder.filePath(QStringLiteral("taskkill.exe")));
}

} // namespace
