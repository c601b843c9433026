#include "app/ImageChoice.h"

#include "app/window/FirmwareFileDialog.h"
#include "update/UpdateChoices.h"

#include <QLineEdit>

using Origin = FirmwareImage::Origin;

ImageChoice::ImageChoice(UpdateChoices &choices, QLineEdit &field, const QString &lastDirFile)
    : m_choices(choices),
      m_lastDirFile(lastDirFile)
{
    // Any thread may change the image. Each queued call reads the image when it runs, so that the field ends
    // up with the last one.
    choices.watchImage([&choices, &field] {
        QMetaObject::invokeMethod(&field, [&choices, &field] { field.setText(choices.image().path); });
    });
}

void ImageChoice::useDefault(const QString &path)
{
    m_choices.chooseImage({path, Origin::Default, false, {}});
}

void ImageChoice::browse(QWidget *owner)
{
    const bool isIap = m_choices.device().iapFlag != 0;
    const QString file = FirmwareFileDialog::choose(owner, isIap, m_lastDirFile);
    if (!file.isEmpty())
        m_choices.chooseImage({file, Origin::User, false, {}});
}
