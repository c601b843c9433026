#include "update/md5Check.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/RecordingReporter.h"

#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class md5CheckTest : public testing::Test
{
protected:
    QString image(const QByteArray &content = "hello")
    {
        const QString path = m_folder.filePath(QStringLiteral("dev.img"));
        EXPECT_TRUE(WholeFile::write(path, content));
        return path;
    }
    static QJsonObject manifest(const QString &sum)
    {
        const QJsonObject entry{{QStringLiteral("md5"), sum}};
        return {{QStringLiteral("CurrentVersion"), QJsonObject{{QStringLiteral("M1"), entry}}}};
    }
    bool check(const QString &path, const QJsonObject &root)
    {
        return md5Check(m_reporter).checkMd5(path, root, QStringLiteral("M1"));
    }
    void expectLines(const QString &fileSum, const QString &serverSum, const QJsonObject &root,
                     const QString &verdict)
    {
        const QString json = QString::fromUtf8(QJsonDocument(root).toJson(QJsonDocument::Indented));
        EXPECT_EQ(m_reporter.events(),
                  (QStringList{QStringLiteral("log now check downloadfile md5.."),
                               QStringLiteral("log DownloadFileMd5:") + fileSum,
                               QStringLiteral("log ServerFileMd5:") + serverSum,
                               QStringLiteral("log serverjson:") + json, QStringLiteral("log ") + verdict}));
    }

    const QString m_sum = QStringLiteral("5d41402abc4b2a76b9719d911017c592"); // of "hello"
    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
};

TEST_F(md5CheckTest, AMatchingMd5Passes)
{
    EXPECT_TRUE(check(image(), manifest(m_sum)));
    expectLines(m_sum, m_sum, manifest(m_sum), QStringLiteral("File MD5 verified successfully."));
}

TEST_F(md5CheckTest, AnUpperCaseMd5FailsEvenForTheRightFile)
{
    EXPECT_FALSE(check(image(), manifest(m_sum.toUpper())));
    expectLines(m_sum, m_sum.toUpper(), manifest(m_sum.toUpper()), QStringLiteral("File MD5 mismatch."));
}

TEST_F(md5CheckTest, AnotherFileFails)
{
    EXPECT_FALSE(check(image("hello!"), manifest(m_sum)));
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("File MD5 mismatch."));
}

TEST_F(md5CheckTest, AnEmptyPathFailsWithoutALookup)
{
    EXPECT_FALSE(check(QString(), manifest(m_sum)));
    expectLines(QString(), QString(), manifest(m_sum), QStringLiteral("get file md5 failed.!"));
}

TEST_F(md5CheckTest, AFileThatCannotBeReadFails)
{
    EXPECT_FALSE(check(m_folder.filePath(QStringLiteral("none")), manifest(m_sum)));
    expectLines(QString(), m_sum, manifest(m_sum), QStringLiteral("get file md5 failed.!"));
}

TEST_F(md5CheckTest, AFolderInsteadOfAFileFails)
{
    EXPECT_EQ(md5Check::fileMd5(m_folder.path()), QString());
    EXPECT_FALSE(check(m_folder.path(), manifest(m_sum)));
}

TEST_F(md5CheckTest, AManifestWithoutAnMd5Fails)
{
    EXPECT_FALSE(check(image(), {}));
    expectLines(m_sum, QString(), {}, QStringLiteral("get file md5 failed.!"));
    EXPECT_FALSE(check(image(), manifest(QString())));
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("get file md5 failed.!"));
}

TEST_F(md5CheckTest, TheMd5CoversAllBlocksOfAFile)
{
    const QString path = image(QByteArray(3 * 1048576 + 1, 'x'));
    EXPECT_EQ(md5Check::fileMd5(path), QStringLiteral("73b648fc048b09d2b5f494ea914867f7"));
}

TEST_F(md5CheckTest, AnEmptyFileHasTheMd5OfNoBytes)
{
    EXPECT_EQ(md5Check::fileMd5(image("")), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
}

} // namespace
