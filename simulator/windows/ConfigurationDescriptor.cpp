#include "simulator/windows/ConfigurationDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace {

constexpr std::size_t headerBytes = LIBUSB_DT_CONFIG_SIZE;

/// A configuration that owns what it points to.
struct Owned : libusb_config_descriptor
{
    std::vector<unsigned char> bytes;
    std::vector<libusb_interface> interfaces;
    std::vector<std::vector<libusb_interface_descriptor>> alternates;
    /// For each alternate setting of each interface.
    std::vector<std::vector<std::vector<libusb_endpoint_descriptor>>> endpoints;
};

unsigned word(const std::vector<unsigned char> &bytes, std::size_t at)
{
    return bytes[at] | (static_cast<unsigned>(bytes[at + 1]) << 8);
}

libusb_interface_descriptor interfaceAt(const unsigned char *bytes)
{
    libusb_interface_descriptor found{};
    found.bLength = bytes[0];
    found.bDescriptorType = bytes[1];
    found.bInterfaceNumber = bytes[2];
    found.bAlternateSetting = bytes[3];
    found.bInterfaceClass = bytes[5];
    found.bInterfaceSubClass = bytes[6];
    found.bInterfaceProtocol = bytes[7];
    found.iInterface = bytes[8];
    return found;
}

libusb_endpoint_descriptor endpointAt(const unsigned char *bytes)
{
    libusb_endpoint_descriptor found{};
    found.bLength = bytes[0];
    found.bDescriptorType = bytes[1];
    found.bEndpointAddress = bytes[2];
    found.bmAttributes = bytes[3];
    found.wMaxPacketSize = static_cast<std::uint16_t>(bytes[4] | (bytes[5] << 8));
    found.bInterval = bytes[6];
    if (bytes[0] >= LIBUSB_DT_ENDPOINT_AUDIO_SIZE) {
        found.bRefresh = bytes[7];
        found.bSynchAddress = bytes[8];
    }
    return found;
}

/// Adds a descriptor that libusb does not know to what precedes it.
template <typename Descriptor>
void addExtra(Descriptor &last, const unsigned char *at, int length)
{
    if (!last.extra)
        last.extra = at;
    last.extra_length += length;
}

void add(Owned &owned, const unsigned char *at, int length)
{
    const int type = at[1];
    if (type == LIBUSB_DT_INTERFACE && length >= LIBUSB_DT_INTERFACE_SIZE) {
        const libusb_interface_descriptor found = interfaceAt(at);
        const bool isNew = owned.alternates.empty() ||
                           owned.alternates.back().front().bInterfaceNumber != found.bInterfaceNumber;
        if (isNew) {
            owned.alternates.emplace_back();
            owned.endpoints.emplace_back();
        }
        owned.alternates.back().push_back(found);
        owned.endpoints.back().emplace_back();
    } else if (owned.alternates.empty()) {
        addExtra(static_cast<libusb_config_descriptor &>(owned), at, length);
    } else if (type == LIBUSB_DT_ENDPOINT && length >= LIBUSB_DT_ENDPOINT_SIZE) {
        owned.endpoints.back().back().push_back(endpointAt(at));
    } else if (owned.endpoints.back().back().empty()) {
        addExtra(owned.alternates.back().back(), at, length);
    } else {
        addExtra(owned.endpoints.back().back().back(), at, length);
    }
}

/// Points from each part to the next, now that none moves any more.
void connect(Owned &owned)
{
    for (std::size_t i = 0; i < owned.alternates.size(); ++i) {
        for (std::size_t j = 0; j < owned.alternates[i].size(); ++j) {
            const auto &endpoints = owned.endpoints[i][j];
            owned.alternates[i][j].bNumEndpoints = static_cast<std::uint8_t>(endpoints.size());
            owned.alternates[i][j].endpoint = endpoints.data();
        }
        owned.interfaces.push_back(
            {owned.alternates[i].data(), static_cast<int>(owned.alternates[i].size())});
    }
    owned.bNumInterfaces = static_cast<std::uint8_t>(owned.interfaces.size());
    owned.interface = owned.interfaces.data();
}

} // namespace

std::vector<std::vector<unsigned char>>
ConfigurationDescriptor::split(const std::vector<unsigned char> &bytes)
{
    std::vector<std::vector<unsigned char>> all;
    std::size_t at = 0;
    while (at + headerBytes <= bytes.size()) {
        const std::size_t length = word(bytes, at + 2);
        if (length < headerBytes || at + length > bytes.size())
            break;
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        all.emplace_back(from, from + static_cast<std::ptrdiff_t>(length));
        at += length;
    }
    return all;
}

libusb_config_descriptor *ConfigurationDescriptor::parse(const std::vector<unsigned char> &bytes)
{
    if (bytes.size() < headerBytes || bytes[0] < headerBytes || bytes[1] != LIBUSB_DT_CONFIG)
        return nullptr;
    auto owned = std::make_unique<Owned>();
    static_cast<libusb_config_descriptor &>(*owned) = libusb_config_descriptor{};
    owned->bytes = bytes;
    owned->bLength = bytes[0];
    owned->bDescriptorType = bytes[1];
    owned->wTotalLength = static_cast<std::uint16_t>(word(bytes, 2));
    owned->bConfigurationValue = bytes[5];
    owned->iConfiguration = bytes[6];
    owned->bmAttributes = bytes[7];
    owned->MaxPower = bytes[8];
    std::size_t at = bytes[0];
    while (at < bytes.size()) {
        const int length = bytes[at];
        if (length < 2 || at + static_cast<std::size_t>(length) > bytes.size())
            return nullptr;
        add(*owned, owned->bytes.data() + at, length);
        at += static_cast<std::size_t>(length);
    }
    connect(*owned);
    return owned.release();
}

void ConfigurationDescriptor::release(libusb_config_descriptor *descriptor)
{
    delete static_cast<Owned *>(descriptor);
}
