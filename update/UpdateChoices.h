#pragma once

#include "devices/ChosenDevice.h"
#include "update/FirmwareImage.h"
#include "update/UpdateRequest.h"

#include <QString>

#include <functional>
#include <mutex>

/// The choices of the user and the connection monitor for the next update. A running update uses the request
/// with which it was started, except that it reads the write type and the state of the restart box when it
/// needs them.
///
/// May be used from any thread. Each access takes a lock for a short time.
class UpdateChoices
{
public:
    ChosenDevice device() const { return read(m_device); }
    bool bootloaderPresent() const { return read(m_bootloaderPresent); }
    /// Sets the results of a scan of the buses in one step. Drops an image that was downloaded for another
    /// model.
    void setFound(const ChosenDevice &device, bool bootloaderPresent);

    bool localFileMode() const { return read(m_localFileMode); }
    void setLocalFileMode(bool on) { write(m_localFileMode, on); }

    /// The text of the write-type selector: "USB" or "HID".
    QString writeType() const { return read(m_writeType); }
    void setWriteType(const QString &type) { write(m_writeType, type); }

    /// Whether the restart box is checkable. Intentional: the device is reset if it is, whether it is ticked
    /// or not.
    bool restartCheckable() const { return read(m_restartCheckable); }
    void setRestartCheckable(bool checkable) { write(m_restartCheckable, checkable); }

    /// Sets a function that is called after image() has changed, on the thread that changed it. Call it
    /// before the first update.
    void watchImage(std::function<void()> watcher) { m_watcher = std::move(watcher); }
    /// The image to burn.
    FirmwareImage image() const { return read(m_image); }
    /// Sets an image that the user has chosen, or the default image.
    void chooseImage(const FirmwareImage &image);
    /// Sets a downloaded image whose checksum is correct.
    void useServerImage(const QString &path, const QString &model);
    /// Restores the image that was set before the downloaded one. Does nothing if the user has chosen another
    /// image meanwhile. Call it before the downloaded file is deleted.
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
    void notifyImageWatcher() const;

    std::function<void()> m_watcher;
    mutable std::mutex m_mutex;
    ChosenDevice m_device;
    FirmwareImage m_image;
    /// The value of m_image before the downloaded image was set.
    FirmwareImage m_imageBefore;
    QString m_writeType;
    bool m_bootloaderPresent = false;
    bool m_localFileMode = false;
    bool m_restartCheckable = false;
};
