#include "app/window/FirmwareFileDialog.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/RecordedDebugStream.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

class FirmwareFileDialogTest : public testing::Test
{
protected:
    FirmwareFileDialogTest() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    QString lastDirFile() const { return m_folder.filePath(QStringLiteral("last_dir.txt")); }
    void remember(const QByteArray &content) const { ASSERT_TRUE(WholeFile::write(lastDirFile(), content)); }
    QByteArray remembered() const { return WholeFile::read(lastDirFile(), "(no file)"); }
    QString start() const { return FirmwareFileDialog::startFolder(lastDirFile()); }
    /// Runs the dialog and calls `operate` with it once it is shown.
    template <typename F>
    QString choose(F operate)
    {
        QTimer::singleShot(0, [operate] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            operate(dialog);
        });
        return FirmwareFileDialog::choose(&m_owner, false, lastDirFile());
    }

    const QString m_documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QTemporaryDir m_folder;
    QWidget m_owner;
};

TEST_F(FirmwareFileDialogTest, TheFileTypeOfTheDeviceIsTheFirstFilter)
{
    EXPECT_EQ(FirmwareFileDialog::filters(true),
              QStringLiteral("BIN 文件 (*.bin);;IMG 文件 (*.img);;所有文件 (*.*)"));
    EXPECT_EQ(FirmwareFileDialog::filters(false),
              QStringLiteral("IMG 文件 (*.img);;BIN 文件 (*.bin);;所有文件 (*.*)"));
}

TEST_F(FirmwareFileDialogTest, BlanksAndALineEndAroundTheRememberedFolderAreTrimmed)
{
    remember("  /srv/固件 images \t\r\n");
    EXPECT_EQ(start(), QStringLiteral("/srv/固件 images"));
}

TEST_F(FirmwareFileDialogTest, WithoutARememberedFolderItStartsInTheDocumentsFolder)
{
    EXPECT_EQ(start(), m_documents);
    remember(" \n");
    EXPECT_EQ(start(), m_documents);
}

TEST_F(FirmwareFileDialogTest, ALongRememberedFolderIsReadWhole)
{
    const QByteArray longPath = '/' + QByteArray(40000, 'x');
    remember(longPath);
    EXPECT_EQ(start(), QString::fromLatin1(longPath));
}

TEST_F(FirmwareFileDialogTest, TheFolderIsRememberedAsUtf8WithoutALineEnd)
{
    remember("a much longer text that has to go");
    FirmwareFileDialog::rememberFolder(lastDirFile(), QStringLiteral("/srv/固件"));
    EXPECT_EQ(remembered(), QByteArray("/srv/固件"));
}

TEST_F(FirmwareFileDialogTest, CancellingStillRemembersTheFolderThatTheDialogShowed)
{
    const RecordedDebugStream debug;
    const QString chosen = choose([this](QFileDialog *dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Chose UpDate File."));
        EXPECT_EQ(dialog->parentWidget(), &m_owner);
        EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
        dialog->setDirectory(m_folder.path());
        dialog->reject();
    });
    EXPECT_EQ(chosen, QString());
    EXPECT_EQ(remembered(), m_folder.path().toUtf8());
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("未选择文件")));
}

TEST_F(FirmwareFileDialogTest, AcceptingGivesTheFile)
{
    remember(m_folder.path().toUtf8());
    const QString image = m_folder.filePath(QStringLiteral("a.img"));
    ASSERT_TRUE(QFile(image).open(QIODevice::WriteOnly));
    const RecordedDebugStream debug;
    const QString chosen = choose([this](QFileDialog *dialog) {
        EXPECT_EQ(dialog->directory().absolutePath(), m_folder.path());
        dialog->findChild<QLineEdit *>()->setText(QStringLiteral("a.img"));
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
    });
    EXPECT_EQ(chosen, image);
    EXPECT_EQ(remembered(), m_folder.path().toUtf8());
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("选择的文件: ") + image));
}

TEST_F(FirmwareFileDialogTest, ListAndNameFieldAreWhiteWhateverTheOwnersBackground)
{
    m_owner.setStyleSheet(QStringLiteral("background-color: rgb(240,240,240);"));
    const QColor white(Qt::white);
    choose([&](QFileDialog *dialog) {
        auto *list = dialog->findChild<QTreeView *>(QStringLiteral("treeView"));
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        const QPoint inList = list->viewport()->mapTo(dialog, list->viewport()->rect().center());
        const QPoint inName = name->mapTo(dialog, name->rect().center());
        const QImage picture = dialog->grab().toImage();
        EXPECT_EQ(picture.pixelColor(inList), white);
        EXPECT_EQ(picture.pixelColor(inName), white);
        dialog->reject();
    });
}

} // namespace
