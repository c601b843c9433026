#include "simulator/windows/Hex.h"

#include <hidapi.h>
#include <libusb.h>

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

// A small program on the bus, for the tests of the replacements for libusb and hidapi. It performs the
// operations in its arguments one after the other and prints a line of JSON for each:
//
//   init                        list
//   open VENDOR PRODUCT         open-path PATH         (numbers as 0xF100)
//   write HEX                   close
//   error                       wait FILE              (until there is one)

namespace {

using nlohmann::json;

void print(const json &line)
{
    std::printf("%s\n", line.dump().c_str());
    std::fflush(stdout);
}

std::string narrow(const wchar_t *text)
{
    std::string result;
    for (; text && *text; ++text)
        result += *text < 128 ? static_cast<char>(*text) : '?';
    return result;
}

json listUsb()
{
    libusb_device **list = nullptr;
    const auto count = libusb_get_device_list(nullptr, &list);
    if (count < 0)
        return {{"count", count}};
    json ids = json::array();
    for (int at = 0; at < count; ++at) {
        libusb_device_descriptor descriptor{};
        libusb_get_device_descriptor(list[at], &descriptor);
        char text[16];
        std::snprintf(text, sizeof text, "%04x:%04x", descriptor.idVendor, descriptor.idProduct);
        ids.push_back(text);
    }
    const bool endsWithNull = list[count] == nullptr;
    libusb_free_device_list(list, 1);
    return {{"count", count}, {"ids", ids}, {"endsWithNull", endsWithNull}};
}

json listHid()
{
    json interfaces = json::array();
    hid_device_info *first = hid_enumerate(0, 0);
    for (const hid_device_info *info = first; info; info = info->next) {
        interfaces.push_back({{"path", info->path ? json(info->path) : json()},
                              {"vendorId", info->vendor_id},
                              {"productId", info->product_id},
                              {"interfaceNumber", info->interface_number},
                              {"product", narrow(info->product_string)}});
    }
    hid_free_enumeration(first);
    return interfaces;
}

void waitFor(const char *fileName)
{
    std::FILE *file = nullptr;
    while (!(file = std::fopen(fileName, "rb")))
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    std::fclose(file);
}

unsigned short number(const char *text)
{
    return static_cast<unsigned short>(std::strtoul(text, nullptr, 0));
}

} // namespace

int main(int argc, char *argv[])
{
    hid_device *device = nullptr;
    int at = 1;
    const auto next = [&] {
        return at < argc ? argv[at++] : "";
    };
    while (at < argc) {
        const std::string step = next();
        if (step == "init") {
            const int usb = libusb_init(nullptr);
            print({{"libusb", usb}, {"hidapi", hid_init()}});
        } else if (step == "list") {
            print({{"usb", listUsb()}, {"hid", listHid()}});
        } else if (step == "open") {
            const unsigned short vendorId = number(next());
            device = hid_open(vendorId, number(next()), nullptr);
            print({{"opened", device != nullptr}});
        } else if (step == "open-path") {
            device = hid_open_path(next());
            print({{"opened", device != nullptr}});
        } else if (step == "write") {
            const auto bytes = bytesOf(next());
            print({{"written", hid_write(device, bytes.data(), bytes.size())}});
        } else if (step == "error") {
            print({{"error", narrow(hid_error(device))}});
        } else if (step == "close") {
            hid_close(device);
            device = nullptr;
            print({{"closed", true}});
        } else if (step == "wait") {
            print({{"waiting", true}});
            waitFor(next());
        } else {
            return 2;
        }
    }
    hid_close(device);
    hid_exit();
    libusb_exit(nullptr);
    return 0;
}
