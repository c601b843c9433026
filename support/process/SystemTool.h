#pragma once

#include <QString>
#include <QStringList>

/// Finds the command-line tools that come with Windows. If a tool is started by its name alone, Windows
/// searches the program's folder and the working folder before the system folder. Anybody who may write to
/// one of those could then choose the program that is run, sometimes with administrator rights.
namespace SystemTool {

/// Returns the path of the tool `name` (without suffix): the one in the system folder, otherwise the first
/// one in PATH, otherwise an empty string. On other systems, which do not have this search order, returns
/// `name`. May be called from any thread.
QString path(const QString &name);

/// Returns the folders in which to search for a tool, in order: `systemFolder`, then those of `searchPath`
/// that are absolute and not in `excluded`. The paths use "/"; letter case is ignored.
QStringList foldersToSearch(const QString &systemFolder, const QStringList &searchPath,
                            const QStringList &excluded);

/// For tests: searches `folder` alone, so that no tool of the real system is started; an empty string
/// restores the search. Must not be called while another thread may be in path().
void setFolderForTests(const QString &folder);
QString folderForTests();

} // namespace SystemTool
