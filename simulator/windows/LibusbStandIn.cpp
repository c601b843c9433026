#include "simulator/connection/BusConnection.h"
#include "simulator/windows/ConfigurationDescriptor.h"
#include "simulator/windows/Hex.h"

#include <libusb.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

// Replaces libusb for programs on a simulated bus. It has the functions that list devices, which behave
// like those of libusb. Devices cannot be opened.

struct libusb_device
{
    std::atomic<int> references{1};
    libusb_device_descriptor descriptor{};
    std::vector<std::vector<unsigned char>> configurations;
    std::uint8_t bus = 1;
    std::vector<std::uint8_t> ports;
};

namespace {

std::unique_ptr<BusConnection> bus;
int initialisations = 0;

void release(libusb_device *device)
{
    if (--device->references == 0)
        delete device;
}

/// Both the descriptor and this system store numbers of two bytes with the low byte first.
libusb_device *deviceOf(const std::string &hex)
{
    const std::vector<unsigned char> bytes = bytesOf(hex);
    if (bytes.size() < LIBUSB_DT_DEVICE_SIZE)
        return nullptr;
    auto *device = new libusb_device;
    static_assert(sizeof device->descriptor == LIBUSB_DT_DEVICE_SIZE, "the descriptor as it is on the wire");
    std::memcpy(&device->descriptor, bytes.data(), LIBUSB_DT_DEVICE_SIZE);
    return device;
}

/// Takes a place such as "3-2.1" apart; without one, a device stands at a port of the root hub.
void setPlace(libusb_device &device, const std::string &ports, std::size_t ordinal)
{
    device.ports.clear();
    const std::size_t hyphen = ports.find('-');
    if (hyphen == std::string::npos) {
        device.ports.push_back(static_cast<std::uint8_t>(ordinal));
        return;
    }
    device.bus = static_cast<std::uint8_t>(std::atoi(ports.c_str()));
    for (std::size_t at = hyphen; at != std::string::npos; at = ports.find('.', at + 1))
        device.ports.push_back(static_cast<std::uint8_t>(std::atoi(ports.c_str() + at + 1)));
}

} // namespace

extern "C" {

// Only the default context is supported; programs on the bus use no other.
int LIBUSB_CALL libusb_init(libusb_context **context)
{
    if (context)
        return LIBUSB_ERROR_NOT_SUPPORTED;
    if (!bus)
        bus = std::make_unique<BusConnection>();
    if (!bus->isOpen()) {
        bus.reset();
        return LIBUSB_ERROR_OTHER;
    }
    ++initialisations;
    return LIBUSB_SUCCESS;
}

void LIBUSB_CALL libusb_exit(libusb_context * /*context*/)
{
    if (initialisations > 0 && --initialisations == 0)
        bus.reset();
}

ssize_t LIBUSB_CALL libusb_get_device_list(libusb_context * /*context*/, libusb_device ***list)
{
    if (!bus)
        return LIBUSB_ERROR_OTHER;
    const nlohmann::json answer = bus->request({{"op", "usbDevices"}});
    if (!answer.value("ok", false))
        return LIBUSB_ERROR_IO;
    std::vector<libusb_device *> devices;
    for (std::size_t i = 0; i < answer.at("devices").size(); ++i) {
        if (libusb_device *device = deviceOf(answer.at("devices").at(i).get<std::string>())) {
            devices.push_back(device);
            device->configurations =
                ConfigurationDescriptor::split(bytesOf(answer.at("configurations").at(i).get<std::string>()));
            setPlace(*device, answer.at("ports").at(i).get<std::string>(), devices.size());
        }
    }
    *list = new libusb_device *[devices.size() + 1]();
    std::copy(devices.begin(), devices.end(), *list);
    return static_cast<ssize_t>(devices.size());
}

int LIBUSB_CALL libusb_handle_events_timeout_completed(libusb_context * /*context*/, timeval * /*limit*/,
                                                       int * /*completed*/)
{
    return LIBUSB_SUCCESS;
}

void LIBUSB_CALL libusb_free_device_list(libusb_device **list, int unreference)
{
    for (libusb_device **device = list; list && unreference && *device; ++device)
        release(*device);
    delete[] list;
}

int LIBUSB_CALL libusb_get_device_descriptor(libusb_device *device, libusb_device_descriptor *descriptor)
{
    *descriptor = device->descriptor;
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_get_config_descriptor(libusb_device *device, uint8_t index,
                                             libusb_config_descriptor **config)
{
    if (index >= device->configurations.size())
        return LIBUSB_ERROR_NOT_FOUND;
    *config = ConfigurationDescriptor::parse(device->configurations[index]);
    return *config ? LIBUSB_SUCCESS : LIBUSB_ERROR_IO;
}

void LIBUSB_CALL libusb_free_config_descriptor(libusb_config_descriptor *config)
{
    ConfigurationDescriptor::release(config);
}

const libusb_version *LIBUSB_CALL libusb_get_version()
{
    static const libusb_version version{1, 0, 0, 0, "", "https://stand-in.example"};
    return &version;
}

uint8_t LIBUSB_CALL libusb_get_bus_number(libusb_device *device)
{
    return device->bus;
}

int LIBUSB_CALL libusb_get_port_numbers(libusb_device *device, uint8_t *ports, int length)
{
    if (length < static_cast<int>(device->ports.size()))
        return LIBUSB_ERROR_OVERFLOW;
    std::copy(device->ports.begin(), device->ports.end(), ports);
    return static_cast<int>(device->ports.size());
}

} // extern "C"
