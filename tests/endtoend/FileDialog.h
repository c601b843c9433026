#pragma once

#include "tests/endtoend/EndToEnd.h"

#include <QDir>

/// The hidden gesture and the file dialog, operated as a person does it.
namespace EndToEnd {

const QString fileDialog = QStringLiteral("Chose UpDate File.");
const QString fileEdit = QStringLiteral("firmwareFileEdit");
const QString chooseButton = QStringLiteral("chooseFileButton");

/// The middle click on the strip in the lower right of the page that shows the file row.
inline bool revealFileRow(UpdateScenario &s)
{
    return s.probe.click(QStringLiteral("flashingPage"),
                         {{QStringLiteral("x"), 730},
                          {QStringLiteral("y"), 310},
                          {QStringLiteral("button"), QStringLiteral("middle")}}) &&
           s.probe.waitForVisible(fileEdit, true, 5000);
}

inline bool openFileDialog(UpdateScenario &s)
{
    return s.probe.click(chooseButton) && s.probe.waitForWindow(fileDialog, 10000);
}

/// Presses a button of the dialog, once more when the list of suggestions took the first click.
inline bool endFileDialog(UpdateScenario &s, const char *button)
{
    for (int click = 0; click < 2; ++click) {
        if (!s.probe.pressDialogButton(QLatin1String(button)))
            return false;
        if (s.probe.waitForNoWindow(fileDialog, click == 0 ? 1000 : 10000))
            return true;
    }
    return false;
}

inline bool typeInFileDialog(UpdateScenario &s, const QString &name)
{
    const QString nameEdit = QStringLiteral("fileNameEdit");
    return s.probe.type(nameEdit, name) && s.probe.waitForText(nameEdit, name, 5000) &&
           s.probe.type(nameEdit, QString(), Qt::Key_Return);
}

/// Goes to the file's folder, then names the file; the path field shows it afterwards.
inline bool chooseFile(UpdateScenario &s, const QString &path)
{
    const QFileInfo file(path);
    return openFileDialog(s) && typeInFileDialog(s, file.path()) &&
           s.probe.waitForText(QStringLiteral("lookInCombo"), file.path(), 5000) &&
           typeInFileDialog(s, file.fileName()) && s.probe.waitForNoWindow(fileDialog, 10000) &&
           s.probe.waitForText(fileEdit, path, 5000);
}

inline QString lastDirFile(const UpdateScenario &s)
{
    return s.program.temporaryFolder() + QStringLiteral("/last_dir.txt");
}

inline QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

/// A folder below the working folder.
inline QString makeFolder(const UpdateScenario &s, const char *name)
{
    const QString path = s.program.workingFolder() + QLatin1Char('/') + QString::fromUtf8(name);
    return QDir().mkpath(path) ? path : QString();
}

} // namespace EndToEnd
