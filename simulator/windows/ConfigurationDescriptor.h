#pragma once

#include <libusb.h>

#include <vector>

/// The descriptors of configurations, taken apart as libusb does.
namespace ConfigurationDescriptor {

/// Returns each configuration in the bytes that follow a device descriptor.
std::vector<std::vector<unsigned char>> split(const std::vector<unsigned char> &bytes);

/// Takes one apart; null if the bytes make no sense. Free it with release().
libusb_config_descriptor *parse(const std::vector<unsigned char> &bytes);

/// Takes what parse() returned, or null.
void release(libusb_config_descriptor *descriptor);

} // namespace ConfigurationDescriptor
