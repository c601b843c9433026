# Windows x64 with the distribution's MinGW-w64. Qt, libusb and hidapi for Windows are looked for
# below the folder that QUILLMARSH_WINDOWS_ROOT names, in the environment or on the command line.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variant with POSIX threads: the other one lacks std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT QUILLMARSH_WINDOWS_ROOT)
    set(QUILLMARSH_WINDOWS_ROOT "$ENV{QUILLMARSH_WINDOWS_ROOT}")
endif()
set(CMAKE_FIND_ROOT_PATH "${QUILLMARSH_WINDOWS_ROOT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
