#pragma once

#include <QString>

class QLineEdit;
class QWidget;
class UpdateChoices;

/// Lets the user pick the image to burn, and shows its path in the path field. GUI thread.
class ImageChoice
{
public:
    /// Makes `field` follow the image in `choices`, whichever thread changes it. Both must outlive this
    /// object. `lastDirFile` is the file that stores which folder the file dialog showed last.
    ImageChoice(UpdateChoices &choices, QLineEdit &field, const QString &lastDirFile);

    /// Makes the default image the one to burn.
    void useDefault(const QString &path);
    /// Lets the user pick a file, in a dialog over the window `owner`.
    void browse(QWidget *owner);

private:
    UpdateChoices &m_choices;
    const QString m_lastDirFile;
};
