#pragma once

#include <QString>

class ProbeClient;

/// The row of the window in which a person chooses a firmware file of their own, and the file dialog
/// behind it, operated as that person does it. Paths are as the program names them, with slashes. What fails
/// tells why in the probe's errorText().
namespace FileRow {

/// The middle click on the unmarked strip in the lower right of the page that shows the row.
bool reveal(ProbeClient &probe);
/// Opens the file dialog and waits until it is there.
bool openDialog(ProbeClient &probe);
/// The folder that the open dialog shows, with slashes.
QString shownFolder(ProbeClient &probe);
/// Goes to the folder in the open dialog.
bool enterFolder(ProbeClient &probe, const QString &path);
/// Types a name into the open dialog and confirms it; a folder's name goes there.
bool typeName(ProbeClient &probe, const QString &name);
/// Presses a button of the dialog, "Open" or "Cancel", and waits until the dialog is gone.
bool endDialog(ProbeClient &probe, const QString &button);
/// Goes to the file's folder in a new dialog, names the file, and waits until the row shows it.
bool choose(ProbeClient &probe, const QString &path);

} // namespace FileRow
