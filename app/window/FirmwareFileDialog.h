#pragma once

#include <QString>

class QWidget;

/// Lets the user pick a firmware file. The dialog opens in the folder that it showed last. GUI thread.
namespace FirmwareFileDialog {

/// Returns the dialog's filters. The file type of the device comes first.
QString filters(bool iapDevice);

/// Returns the folder that is stored in the file `lastDirFile`, or else the user's documents folder.
QString startFolder(const QString &lastDirFile);

/// Stores `folder` in the file `lastDirFile`.
void rememberFolder(const QString &lastDirFile, const QString &folder);

/// Runs the dialog modally over `owner`. Returns the picked file, or an empty text if the user cancelled.
/// Stores the folder that the dialog showed in either case.
QString choose(QWidget *owner, bool iapDevice, const QString &lastDirFile);

} // namespace FirmwareFileDialog
