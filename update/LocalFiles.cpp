#include "update/LocalFiles.h"

#include <QDebug>
#include <QDir>

QStringList LocalFiles::listImages(const QString &dir)
{
    const QDir folder(dir);
    if (!folder.exists()) {
        qDebug() << "指定的路径无效!";
        return {};
    }
    QStringList names;
    const QFileInfoList images =
        folder.entryInfoList({QStringLiteral("*.img")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &image : images) {
        qDebug().noquote() << "文件路径：" << image.absoluteFilePath();
        names.append(image.fileName());
    }
    return names;
}

void LocalFiles::clearDir(const QString &dir)
{
    const QDir folder(dir);
    if (!folder.exists()) {
        qDebug().noquote() << "Directory does not exist:" << dir;
        return;
    }
    // Links are removed as well, so that nothing is written through one later.
    const QFileInfoList files = folder.entryInfoList(
        QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &file : files) {
        if (file.isDir() && !file.isSymLink())
            continue;
        const QString path = file.absoluteFilePath();
        qDebug().noquote() << (QFile::remove(path) ? "Removed file:" : "Failed to remove file:") << path;
    }
}

bool LocalFiles::ensurePath(const QString &path)
{
    if (QDir(path).exists())
        return true;
    const bool created = QDir().mkpath(path);
    qDebug().noquote() << (created ? "Created:" : "Create failed:") << path;
    return created;
}
