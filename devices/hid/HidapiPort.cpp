#include "devices/hid/HidPort.h"

#include "devices/hid/HidMarkers.h"

#include <hidapi.h>

#include <mutex>

namespace {

/// Locks hidapi, which has global state, for the calling thread.
class HidapiLock
{
public:
    HidapiLock() : m_guard(mutex()) {}
    Q_DISABLE_COPY(HidapiLock)

private:
    static std::mutex &mutex()
    {
        static std::mutex hidapiMutex;
        return hidapiMutex;
    }

    const std::lock_guard<std::mutex> m_guard;
};

struct EnumerationDeleter
{
    void operator()(hid_device_info *first) const { hid_free_enumeration(first); }
};

/// Call it with hidapi locked: the text belongs to the library, and the next call may change it.
QString errorTextOf(hid_device *device)
{
    const wchar_t *text = hid_error(device);
    return text == nullptr ? QString() : QString::fromWCharArray(text);
}

class HidapiDevice : public HidDevice
{
public:
    /// Owns `handle`.
    explicit HidapiDevice(hid_device *handle) : m_handle(handle) {}
    ~HidapiDevice() override
    {
        const HidapiLock lock;
        hid_close(m_handle);
    }
    Q_DISABLE_COPY(HidapiDevice)

    int write(const QByteArray &report) override
    {
        const HidapiLock lock;
        return hid_write(m_handle, reinterpret_cast<const unsigned char *>(report.constData()),
                         static_cast<size_t>(report.size()));
    }
    QString errorText() const override
    {
        const HidapiLock lock;
        return errorTextOf(m_handle);
    }

private:
    hid_device *const m_handle;
};

class HidapiPort : public HidPort
{
public:
    QVector<HidInterface> enumerate() override
    {
        QVector<HidInterface> interfaces = list();
        HidMarkers::fill(interfaces);
        return interfaces;
    }

    std::unique_ptr<HidDevice> open(quint16 vendorId, quint16 productId) override
    {
        const HidapiLock lock;
        return wrap(hid_open(vendorId, productId, nullptr));
    }

    std::unique_ptr<HidDevice> openPath(const QByteArray &path) override
    {
        // hidapi does not define what it does with a null path, and "" is not a path.
        if (path.isEmpty())
            return nullptr;
        const HidapiLock lock;
        return wrap(hid_open_path(path.constData()));
    }

    QString openErrorText() const override
    {
        const HidapiLock lock;
        return m_openErrorText;
    }

private:
    static QVector<HidInterface> list()
    {
        const HidapiLock lock;
        const std::unique_ptr<hid_device_info, EnumerationDeleter> first(hid_enumerate(0, 0));
        QVector<HidInterface> interfaces;
        for (const hid_device_info *info = first.get(); info != nullptr; info = info->next) {
            HidInterface entry;
            entry.vendorId = info->vendor_id;
            entry.productId = info->product_id;
            // Null while the system is still setting up the interface.
            entry.path = QByteArray(info->path);
            entry.interfaceNumber = info->interface_number;
            entry.usagePage = info->usage_page;
            entry.usage = info->usage;
            interfaces.append(entry);
        }
        return interfaces;
    }

    /// Call it with hidapi locked, directly after the call that returned `device`.
    std::unique_ptr<HidDevice> wrap(hid_device *device)
    {
        if (device != nullptr)
            return std::make_unique<HidapiDevice>(device);
        m_openErrorText = errorTextOf(nullptr);
        return nullptr;
    }

    /// Stored here, because hidapi's own text changes to "Success" with the next successful call.
    QString m_openErrorText;
};

} // namespace

std::unique_ptr<HidPort> makeHidapiPort()
{
    return std::make_unique<HidapiPort>();
}
