#include "simulator/connection/BusConnection.h"
#include "simulator/windows/Hex.h"

#include <hidapi.h>

// BusConnection.h must be included before windows.h.
#include <windows.h>

#include <cstdlib>
#include <cstring>

// Replaces hidapi for programs on a simulated bus. Like hidapi on Windows, it has Windows' paths, and error
// texts that begin with the name of a system function and contain its error number.

struct hid_device_
{
    int handle = 0;
    std::wstring error = L"Success";
};

namespace {

std::unique_ptr<BusConnection> bus;
/// The text that hid_error() returns without a device.
std::wstring globalError = L"Success";

DWORD systemError(const std::string &failure)
{
    if (failure == "refused")
        return ERROR_GEN_FAILURE;
    if (failure == "broken")
        return ERROR_IO_DEVICE;
    if (failure == "denied")
        return ERROR_ACCESS_DENIED;
    return ERROR_DEVICE_NOT_CONNECTED;
}

std::wstring errorText(const wchar_t *function, const nlohmann::json &answer)
{
    const DWORD number = systemError(answer.value("error", std::string()));
    wchar_t said[512] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number, 0, said,
                   sizeof said / sizeof *said, nullptr);
    said[std::wcscspn(said, L"\r\n")] = L'\0';
    wchar_t text[640] = L"";
    swprintf(text, sizeof text / sizeof *text, L"%ls: (0x%08lX) %ls", function, number, said);
    return text;
}

/// Copies a text of an enumeration. It must be freed with free().
template <typename Character>
Character *copyOf(const std::basic_string<Character> &text)
{
    const std::size_t bytes = (text.size() + 1) * sizeof(Character);
    auto *copy = static_cast<Character *>(std::malloc(bytes));
    if (copy)
        std::memcpy(copy, text.c_str(), bytes);
    return copy;
}

std::wstring wide(const nlohmann::json &entry, const char *key)
{
    const std::string text = entry.value(key, std::string());
    const int count = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(count), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(), count);
    return result;
}

hid_device_info *infoOf(const nlohmann::json &entry)
{
    auto *info = static_cast<hid_device_info *>(std::calloc(1, sizeof(hid_device_info)));
    if (!info)
        return nullptr;
    if (entry.at("path").is_string())
        info->path = copyOf(entry.at("path").get<std::string>());
    info->vendor_id = entry.at("vendorId").get<unsigned short>();
    info->product_id = entry.at("productId").get<unsigned short>();
    info->serial_number = copyOf(wide(entry, "serial"));
    info->manufacturer_string = copyOf(wide(entry, "manufacturer"));
    info->product_string = copyOf(wide(entry, "product"));
    info->release_number = 0x0100;
    info->usage_page = 0xFF00;
    info->usage = 1;
    info->interface_number = entry.at("interfaceNumber").get<int>();
    info->bus_type = HID_API_BUS_USB;
    return info;
}

hid_device *openPath(const char *path)
{
    const nlohmann::json answer = bus->request({{"op", "hidOpen"}, {"path", path}});
    if (!answer.value("ok", false)) {
        globalError = errorText(L"open_device", answer);
        return nullptr;
    }
    auto *device = new hid_device;
    device->handle = answer.at("handle").get<int>();
    return device;
}

} // namespace

extern "C" {

int HID_API_CALL hid_init()
{
    if (!bus)
        bus = std::make_unique<BusConnection>();
    if (bus->isOpen())
        return 0;
    bus.reset();
    globalError = L"There is no simulated bus";
    return -1;
}

int HID_API_CALL hid_exit()
{
    bus.reset();
    return 0;
}

hid_device_info *HID_API_CALL hid_enumerate(unsigned short vendorId, unsigned short productId)
{
    if (hid_init() != 0)
        return nullptr;
    const nlohmann::json answer = bus->request({{"op", "hidInterfaces"}});
    hid_device_info *first = nullptr;
    hid_device_info **next = &first;
    for (const auto &entry : answer.value("interfaces", nlohmann::json::array())) {
        hid_device_info *info = infoOf(entry);
        if (!info)
            break;
        if ((vendorId != 0 && vendorId != info->vendor_id) ||
            (productId != 0 && productId != info->product_id)) {
            hid_free_enumeration(info);
            continue;
        }
        *next = info;
        next = &info->next;
    }
    return first;
}

void HID_API_CALL hid_free_enumeration(hid_device_info *first)
{
    while (first) {
        hid_device_info *next = first->next;
        std::free(first->path);
        std::free(first->serial_number);
        std::free(first->manufacturer_string);
        std::free(first->product_string);
        std::free(first);
        first = next;
    }
}

hid_device *HID_API_CALL hid_open(unsigned short vendorId, unsigned short productId,
                                  const wchar_t * /*serialNumber*/)
{
    hid_device_info *first = hid_enumerate(vendorId, productId);
    hid_device *device = nullptr;
    if (first && first->path)
        device = openPath(first->path);
    else
        globalError = L"Device with requested VID/PID/(SerialNumber) not found";
    hid_free_enumeration(first);
    return device;
}

hid_device *HID_API_CALL hid_open_path(const char *path)
{
    return hid_init() == 0 ? openPath(path) : nullptr;
}

int HID_API_CALL hid_write(hid_device *device, const unsigned char *data, std::size_t length)
{
    const nlohmann::json answer =
        bus ? bus->request({{"op", "hidWrite"}, {"handle", device->handle}, {"report", hexOf(data, length)}})
            : nlohmann::json::object();
    if (answer.value("ok", false)) {
        device->error = L"Success";
        return answer.at("count").get<int>();
    }
    device->error = errorText(L"hid_write/WriteFile", answer);
    return -1;
}

const char *HID_API_CALL hid_version_str()
{
    return "0.0.0";
}

const wchar_t *HID_API_CALL hid_error(hid_device *device)
{
    return device ? device->error.c_str() : globalError.c_str();
}

void HID_API_CALL hid_close(hid_device *device)
{
    if (device && bus)
        bus->request({{"op", "hidClose"}, {"handle", device->handle}});
    delete device;
}

} // extern "C"
