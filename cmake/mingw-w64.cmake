# The toolchain for Windows x64 with the distribution's MinGW-w64. Qt, libusb, hidapi, libsodium and GoogleTest
# for Windows are searched for in QUILLMARSH_WINDOWS_ROOT, which is set in the environment or on the command line.
#
# scripts/windows/libraries.sh builds them once and prints that folder. It keeps them in the cache folder
# ${QUILLMARSH_WINDOWS_CACHE:-~/.cache/quillmarsh-windows}:
#   NAME-KEY/      an installed library; KEY changes with its recipe
#   root-KEY/      all libraries together: bin (DLLs and build tools), include, lib, plugins
#   current        a link to the root-KEY of the last build
#   logs/NAME.log  the log of building each library
# A folder with a KEY is complete or does not exist.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variant with POSIX threads, because the other one lacks std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Cached, so that the build folder can be configured again without the variable.
set(QUILLMARSH_WINDOWS_ROOT "$ENV{QUILLMARSH_WINDOWS_ROOT}" CACHE PATH "Qt, libusb, hidapi, libsodium and GoogleTest for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLMARSH_WINDOWS_ROOT)
set(CMAKE_FIND_ROOT_PATH "${QUILLMARSH_WINDOWS_ROOT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Do not search the folders of the build machine.
set(ENV{PKG_CONFIG_LIBDIR} "${QUILLMARSH_WINDOWS_ROOT}/lib/pkgconfig")

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/wine-test.sh" "${QUILLMARSH_WINDOWS_ROOT}/bin")
