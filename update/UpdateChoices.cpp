#include "update/UpdateChoices.h"

using Origin = FirmwareImage::Origin;

void UpdateChoices::setFound(const ChosenDevice &device, bool bootloaderPresent)
{
    bool isForeign = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_device = device;
        m_bootloaderPresent = bootloaderPresent;
        isForeign =
            m_image.origin == Origin::Server && !device.name.isEmpty() && device.name != m_image.model;
    }
    if (isForeign)
        dropServerImage();
}

void UpdateChoices::chooseImage(const FirmwareImage &image)
{
    write(m_image, image);
    notifyImageWatcher();
}

void UpdateChoices::useServerImage(const QString &path, const QString &model)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_image.origin != Origin::Server)
            m_imageBefore = m_image;
        m_image = {path, Origin::Server, true, model};
    }
    notifyImageWatcher();
}

void UpdateChoices::dropServerImage()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_image.origin != Origin::Server)
            return;
        m_image = m_imageBefore;
    }
    notifyImageWatcher();
}

UpdateRequest UpdateChoices::request() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return {m_device, m_bootloaderPresent, m_localFileMode, m_image, {}, false};
}

void UpdateChoices::notifyImageWatcher() const
{
    if (m_watcher)
        m_watcher();
}
