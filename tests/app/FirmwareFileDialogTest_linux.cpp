#include "app/window/FirmwareFileDialog.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

// Opening a pipe that has no other end would block the window for ever.
TEST(FirmwareFileDialogPipeTest, ANamedPipeInPlaceOfTheFileWithTheFolderIsNotOpened)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("last_dir.txt"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(FirmwareFileDialog::startFolder(path),
              QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    FirmwareFileDialog::rememberFolder(path, folder.path());
    EXPECT_FALSE(QFileInfo(path).isFile());
}

} // namespace
