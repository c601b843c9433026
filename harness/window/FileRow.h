#pragma once

#include <QString>

class ProbeClient;

/// Operates, as a user does, the row of the window in which a local firmware file is chosen, and its file
/// dialog. Paths are those that the program sees, with slashes. The functions return false on failure; the
/// probe's errorText() then returns the reason.
namespace FileRow {

/// Shows the row by a middle click on the unmarked strip in the lower right of the page.
bool reveal(ProbeClient &probe);
/// Opens the file dialog and waits until it is there.
bool openDialog(ProbeClient &probe);
/// Returns the folder that the open dialog shows, with slashes.
QString shownFolder(ProbeClient &probe);
/// Goes to the folder in the open dialog.
bool enterFolder(ProbeClient &probe, const QString &path);
/// Types a name into the open dialog and confirms it. With the name of a folder, the dialog changes to that
/// folder.
bool typeName(ProbeClient &probe, const QString &name);
/// Presses a button of the dialog, "Open" or "Cancel", and waits until the dialog is gone.
bool endDialog(ProbeClient &probe, const QString &button);
/// Chooses a file: opens the dialog, changes to the file's folder, types its name, and waits until the row
/// shows it.
bool choose(ProbeClient &probe, const QString &path);

} // namespace FileRow
