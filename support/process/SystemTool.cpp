#include "support/process/SystemTool.h"

#include <QDir>

namespace {

QString &testFolder()
{
    static QString folder;
    return folder;
}

} // namespace

QStringList SystemTool::foldersToSearch(const QString &systemFolder, const QStringList &searchPath,
                                        const QStringList &excluded)
{
    QStringList folders;
    if (!systemFolder.isEmpty())
        folders.append(QDir::cleanPath(systemFolder));
    for (const QString &entry : searchPath) {
        const QString folder = QDir::cleanPath(entry);
        if (QDir::isAbsolutePath(folder) && !excluded.contains(folder, Qt::CaseInsensitive))
            folders.append(folder);
    }
    return folders;
}

QString SystemTool::folderForTests()
{
    return testFolder();
}

void SystemTool::setFolderForTests(const QString &folder)
{
    testFolder() = folder;
}
