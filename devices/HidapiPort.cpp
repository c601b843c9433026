#include "devices/HidPort.h"

#include "devices/HidMarkers.h"

#include <hidapi.h>

namespace {

struct DeviceDeleter
{
    void operator()(hid_device *device) const { hid_close(device); }
};
using DeviceHandle = std::unique_ptr<hid_device, DeviceDeleter>;

struct EnumerationDeleter
{
    void operator()(hid_device_info *first) const { hid_free_enumeration(first); }
};

QString errorTextOf(hid_device *device)
{
    const wchar_t *text = hid_error(device);
    return text == nullptr ? QString() : QString::fromWCharArray(text);
}

class HidapiDevice : public HidDevice
{
public:
    explicit HidapiDevice(DeviceHandle handle) : m_handle(std::move(handle)) {}

    int write(const QByteArray &report) override
    {
        return hid_write(m_handle.get(), reinterpret_cast<const unsigned char *>(report.constData()),
                         static_cast<size_t>(report.size()));
    }
    QString errorText() const override { return errorTextOf(m_handle.get()); }

private:
    DeviceHandle m_handle;
};

std::unique_ptr<HidDevice> wrap(hid_device *device)
{
    if (device == nullptr)
        return nullptr;
    return std::make_unique<HidapiDevice>(DeviceHandle(device));
}

class HidapiPort : public HidPort
{
public:
    QVector<HidInterface> enumerate() override
    {
        const std::unique_ptr<hid_device_info, EnumerationDeleter> first(hid_enumerate(0, 0));
        QVector<HidInterface> interfaces;
        for (const hid_device_info *info = first.get(); info != nullptr; info = info->next) {
            HidInterface entry;
            entry.vendorId = info->vendor_id;
            entry.productId = info->product_id;
            // Null while the system is still setting the interface up.
            entry.path = QByteArray(info->path);
            entry.interfaceNumber = info->interface_number;
            interfaces.append(entry);
        }
        HidMarkers::fill(interfaces);
        return interfaces;
    }

    std::unique_ptr<HidDevice> open(quint16 vendorId, quint16 productId) override
    {
        return wrap(hid_open(vendorId, productId, nullptr));
    }

    std::unique_ptr<HidDevice> openPath(const QByteArray &path) override
    {
        // What hidapi does with a null path is nowhere promised, and "" names no interface.
        return path.isEmpty() ? nullptr : wrap(hid_open_path(path.constData()));
    }

    QString openErrorText() const override { return errorTextOf(nullptr); }
};

} // namespace

std::unique_ptr<HidPort> makeHidapiPort()
{
    return std::make_unique<HidapiPort>();
}
