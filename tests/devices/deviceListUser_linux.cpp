// deviceListUser WATCHED LAST
//
// Lists the devices on the bus again and again, from when the product WATCHED is there until LAST is there as
// well (both in hexadecimal). Then prints by how many bytes the memory in use has grown.

#include "devices/DeviceLibraries.h"
#include "devices/usb/LibusbDeviceList.h"

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

bool isThere(unsigned long product)
{
    const LibusbDeviceList devices;
    for (ssize_t i = 0; i < devices.count(); ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(devices.at(i), &descriptor) == LIBUSB_SUCCESS &&
            descriptor.idProduct == product)
            return true;
    }
    return false;
}

void waitFor(const char *product)
{
    while (!isThere(std::strtoul(product, nullptr, 16)))
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

int main(int argc, char *argv[])
{
    DeviceLibraries libraries;
    if (argc != 3 || !libraries.initialiseUsb())
        return 2;
    waitFor(argv[1]);
    std::puts("counting");
    std::fflush(stdout);
    const std::size_t before = mallinfo2().uordblks;
    waitFor(argv[2]);
    std::printf("%ld\n", static_cast<long>(mallinfo2().uordblks) - static_cast<long>(before));
    return 0;
}
