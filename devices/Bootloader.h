#pragma once

#include <QtGlobal>

/// The ids of a device of the SoC family that waits for firmware in its bootloader.
namespace Bootloader {
constexpr quint32 vendorId = 0x33C3;
constexpr quint32 productId = 0x8899;

constexpr bool hasIds(quint32 vendor, quint32 product)
{
    return vendor == vendorId && product == productId;
}
} // namespace Bootloader
