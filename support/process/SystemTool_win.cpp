#include "support/process/SystemTool.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <windows.h>

#include <array>

namespace {

QString systemFolder()
{
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return length < folder.size() ? QString::fromWCharArray(folder.data(), static_cast<int>(length))
                                  : QString();
}

/// Returns the folders from which no tool may be started, each also in canonical form, without links and
/// short names.
QStringList untrustedFolders()
{
    QStringList folders;
    for (const QString &folder : {QCoreApplication::applicationDirPath(), QDir::currentPath()})
        folders += {QDir::cleanPath(folder), QFileInfo(folder).canonicalFilePath()};
    return folders;
}

QStringList folders()
{
    if (!SystemTool::folderForTests().isEmpty())
        return {SystemTool::folderForTests()};
    const QStringList searchPath =
        qEnvironmentVariable("PATH").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    return SystemTool::foldersToSearch(systemFolder(), searchPath, untrustedFolders());
}

} // namespace

QString SystemTool::path(const QString &name)
{
    const QStringList searched = folders();
    for (const QString &folder : searched) {
        const QString file = folder + QLatin1Char('/') + name + QLatin1String(".exe");
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}
