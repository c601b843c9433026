#pragma once

#include <QString>

class QWidget;

/// Lets the user pick a firmware file, starting in the folder that the dialog showed last.
namespace FirmwareFileDialog {

/// The dialog's filters; the kind that the device takes comes first.
QString filters(bool iapDevice);

/// The folder remembered in `lastDirFile`, or the user's documents folder when there is none.
QString startFolder(const QString &lastDirFile);

void rememberFolder(const QString &lastDirFile, const QString &folder);

/// Runs the dialog modally over `owner`; returns the picked file, or nothing. The folder that it
/// showed is remembered in either case. GUI thread.
QString choose(QWidget *owner, bool iapDevice, const QString &lastDirFile);

} // namespace FirmwareFileDialog
