# Windows x64 with the distribution's MinGW-w64. Qt, libusb, hidapi, libsodium and GoogleTest for Windows are
# looked for in the folder that QUILLMARSH_WINDOWS_ROOT names, in the environment or on the command line.
#
# scripts/windows/libraries.sh builds them, once, and prints that folder. It keeps them in the cache
# folder ${QUILLMARSH_WINDOWS_CACHE:-~/.cache/quillmarsh-windows}:
#   NAME-KEY/      one library as it was installed; KEY changes with its recipe
#   root-KEY/      all of them together: bin (DLLs and the tools of the build), include, lib, plugins
#   current        a link to the root-KEY of the last build
#   logs/NAME.log  how each was built
# A folder with a KEY is complete or absent.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variant with POSIX threads: the other one lacks std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Kept, so that the build folder can be configured again without it.
set(QUILLMARSH_WINDOWS_ROOT "$ENV{QUILLMARSH_WINDOWS_ROOT}" CACHE PATH "Qt, libusb, hidapi, libsodium and GoogleTest for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLMARSH_WINDOWS_ROOT)
set(CMAKE_FIND_ROOT_PATH "${QUILLMARSH_WINDOWS_ROOT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Nothing of the machine's own.
set(ENV{PKG_CONFIG_LIBDIR} "${QUILLMARSH_WINDOWS_ROOT}/lib/pkgconfig")

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/wine-test.sh" "${QUILLMARSH_WINDOWS_ROOT}/bin")
