#pragma once

#include "devices/ChosenDevice.h"
#include "update/FirmwareImage.h"
#include "update/UpdateRequest.h"

#include <QString>

#include <functional>
#include <mutex>

/// What the user and the connection monitor have chosen for the next update. A running update works on the
/// request that it was started with; of the later choices it reads the write type and the restart box.
///
/// May be used from any thread. Every access is one short lock.
class UpdateChoices
{
public:
    ChosenDevice device() const { return read(m_device); }
    bool bootloaderPresent() const { return read(m_bootloaderPresent); }
    /// Sets at once what one scan of the buses has found. An image that was downloaded for another model is
    /// dropped.
    void setFound(const ChosenDevice &device, bool bootloaderPresent);

    bool localFileMode() const { return read(m_localFileMode); }
    void setLocalFileMode(bool on) { write(m_localFileMode, on); }

    /// Text of the write-type selector: "USB" or "HID".
    QString writeType() const { return read(m_writeType); }
    void setWriteType(const QString &type) { write(m_writeType, type); }

    /// Whether the restart box is checkable: that, not its tick, decides on the reset.
    bool restartCheckable() const { return read(m_restartCheckable); }
    void setRestartCheckable(bool checkable) { write(m_restartCheckable, checkable); }

    /// Sets who is told that image() has changed, on the thread that changed it. Call it before the first
    /// update.
    void watchImage(std::function<void()> watcher) { m_watcher = std::move(watcher); }
    /// The image to burn.
    FirmwareImage image() const { return read(m_image); }
    /// Sets an image that the user picked, or the default one.
    void chooseImage(const FirmwareImage &image);
    /// Sets a downloaded image whose checksum was right.
    void useServerImage(const QString &path, const QString &model);
    /// Goes back to the image that was chosen before the downloaded one. Does nothing if the user has picked
    /// another meanwhile. Call it before the downloaded file is deleted.
    void dropServerImage();

    /// Returns the request for an update that starts now.
    UpdateRequest request() const;

private:
    template <typename T>
    T read(const T &value) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return value;
    }
    template <typename T>
    void write(T &value, const T &next)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        value = next;
    }
    void tellImage() const;

    std::function<void()> m_watcher;
    mutable std::mutex m_mutex;
    ChosenDevice m_device;
    FirmwareImage m_image;
    /// What m_image was before a downloaded image.
    FirmwareImage m_imageBefore;
    QString m_writeType;
    bool m_bootloaderPresent = false;
    bool m_localFileMode = false;
    bool m_restartCheckable = false;
};
