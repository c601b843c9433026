#pragma once

#include "devices/ChosenDevice.h"

#include <QString>

#include <mutex>

/// What the update workflow reads, on its own thread, of the state that the GUI thread owns. The
/// GUI keeps it current; every access is one short lock. The workflow reads each value at the
/// moment at which it matters, so a choice made while the download runs still counts.
class LiveState
{
public:
    ChosenDevice device() const { return read(m_device); }
    void setDevice(const ChosenDevice &device) { write(m_device, device); }

    bool bootloaderPresent() const { return read(m_bootloaderPresent); }
    void setBootloaderPresent(bool present) { write(m_bootloaderPresent, present); }

    /// What one look at the buses has found, both at once.
    void setFound(const ChosenDevice &device, bool bootloaderPresent)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_device = device;
        m_bootloaderPresent = bootloaderPresent;
    }

    bool localFileMode() const { return read(m_localFileMode); }
    void setLocalFileMode(bool on) { write(m_localFileMode, on); }

    /// Path of the image to burn; the workflow sets it, too, after a download.
    QString imagePath() const { return read(m_imagePath); }
    void setImagePath(const QString &path) { write(m_imagePath, path); }

    /// Text of the write-type selector: "USB" or "HID".
    QString writeType() const { return read(m_writeType); }
    void setWriteType(const QString &type) { write(m_writeType, type); }

    /// Whether the restart box is checkable: that, not its tick, decides on the reset.
    bool restartCheckable() const { return read(m_restartCheckable); }
    void setRestartCheckable(bool checkable) { write(m_restartCheckable, checkable); }

    /// Whether a flasher is writing to a device right now; the workflow sets it.
    bool isFlashing() const { return read(m_flashing); }
    void setFlashing(bool flashing) { write(m_flashing, flashing); }

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

    mutable std::mutex m_mutex;
    ChosenDevice m_device;
    QString m_imagePath;
    QString m_writeType;
    bool m_bootloaderPresent = false;
    bool m_localFileMode = false;
    bool m_restartCheckable = false;
    bool m_flashing = false;
};
