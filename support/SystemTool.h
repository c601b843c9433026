#pragma once

#include <QString>
#include <QStringList>

/// Finds the command-line tools that come with Windows. Started by its name alone, a program there is taken
/// from the program's folder or the working folder before the system's: whoever may write in one of those
/// would decide what is run, with administrator rights at times.
namespace SystemTool {

/// Returns the path of the tool `name` (without suffix): that in the system folder, else the first in the
/// search path. Returns an empty text when there is none. Systems other than Windows have no such tools and
/// no such order: there it returns `name`. May be called from any thread.
QString path(const QString &name);

/// Returns the folders in which to look for a tool, in this order: `systemFolder`, then those of `searchPath`
/// that are absolute and not among `leftOut`. Paths have "/" between their parts; letter case does not count.
QStringList foldersToSearch(const QString &systemFolder, const QStringList &searchPath,
                            const QStringList &leftOut);

/// For tests: takes `folder` for the system folder; an empty text ends that. Not while another thread may be
/// in path().
void setFolderForTests(const QString &folder);
QString folderForTests();

} // namespace SystemTool
