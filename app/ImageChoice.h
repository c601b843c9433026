#pragma once

#include <QString>

class QLineEdit;
class QWidget;
class UpdateChoices;

/// The image to burn as the path field shows it, and as the user picks it. GUI thread.
class ImageChoice
{
public:
    /// Shows the image from now on, whoever changes it. `choices` and `field` must outlive this object;
    /// `lastDirFile` stores the folder that the file dialog showed last.
    ImageChoice(UpdateChoices &choices, QLineEdit &field, const QString &lastDirFile);

    /// Makes the default image the one to burn.
    void useDefault(const QString &path);
    /// Lets the user pick a file over the window `owner`.
    void browse(QWidget *owner);

private:
    UpdateChoices &m_choices;
    const QString m_lastDirFile;
};
