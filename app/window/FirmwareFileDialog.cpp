#include "app/window/FirmwareFileDialog.h"

#include "support/process/ShutdownFlag.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>

namespace {

/// Returns whether something other than a regular file has this path. Opening a named pipe would block the
/// window for ever.
bool existsButIsNoFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

} // namespace

QString FirmwareFileDialog::filters(bool iapDevice)
{
    return iapDevice ? QCoreApplication::translate("bringToForeground",
                                                   "BIN 文件 (*.bin);;IMG 文件 (*.img);;所有文件 (*.*)")
                     : QCoreApplication::translate("bringToForeground",
                                                   "IMG 文件 (*.img);;BIN 文件 (*.bin);;所有文件 (*.*)");
}

QString FirmwareFileDialog::startFolder(const QString &lastDirFile)
{
    QFile file(lastDirFile);
    QString folder;
    if (!existsButIsNoFile(lastDirFile) && file.open(QIODevice::ReadOnly | QIODevice::Text))
        folder = QString::fromUtf8(file.readAll()).trimmed();
    return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) : folder;
}

void FirmwareFileDialog::rememberFolder(const QString &lastDirFile, const QString &folder)
{
    QFile file(lastDirFile);
    if (existsButIsNoFile(lastDirFile) ||
        !file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << folder;
}

QString FirmwareFileDialog::choose(QWidget *owner, bool iapDevice, const QString &lastDirFile)
{
    QFileDialog dialog(owner, QStringLiteral("Chose UpDate File."), startFolder(lastDirFile),
                       filters(iapDevice));
    dialog.setObjectName(QStringLiteral("firmwareFileDialog"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    // The dialog inherits the owner's grey background, in which its input fields look disabled.
    dialog.setStyleSheet(QStringLiteral("QAbstractItemView, QLineEdit { background-color: white; }"));
    QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, &dialog, &QDialog::reject);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    rememberFolder(lastDirFile, dialog.directory().absolutePath());

    QString file = accepted ? dialog.selectedFiles().value(0) : QString();
    if (file.isEmpty())
        qDebug() << "未选择文件";
    else
        qDebug().noquote() << "选择的文件:" << file;
    return file;
}
