# libusb and hidapi as imported targets: device::libusb, device::hidapi. On Linux this is the hidraw
# back end of hidapi, which reports a path for each interface without detaching its driver.

pkg_check_modules(libusb REQUIRED IMPORTED_TARGET libusb-1.0)
add_library(device::libusb ALIAS PkgConfig::libusb)

if(WIN32)
    pkg_check_modules(hidapi REQUIRED IMPORTED_TARGET hidapi)
else()
    pkg_check_modules(hidapi REQUIRED IMPORTED_TARGET hidapi-hidraw)
endif()
add_library(device::hidapi ALIAS PkgConfig::hidapi)
