# An interface target with the compile and link options of all targets of the project.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Reports of sanitizers and crashes need only functions and lines; the preset "debug" has full information.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

find_program(QUILLMARSH_CCACHE ccache)
mark_as_advanced(QUILLMARSH_CCACHE)
if(QUILLMARSH_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" "CCACHE_NOHASHDIR=1"
        # Required by the manual of ccache for precompiled headers.
        "CCACHE_SLOPPINESS=pch_defines,time_macros" "${QUILLMARSH_CCACHE}")
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

# mold links in a tenth of the time of the default linker, but not for Windows.
find_program(QUILLMARSH_MOLD mold)
mark_as_advanced(QUILLMARSH_MOLD)
if(QUILLMARSH_MOLD AND NOT WIN32)
    add_link_options(-fuse-ld=mold)
endif()

# What is shipped names its sources from the project's folder on, wherever that lies.
add_compile_options("$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>")

add_library(quillmarsh_common INTERFACE)
add_library(quillmarsh::common ALIAS quillmarsh_common)

target_include_directories(quillmarsh_common INTERFACE "${PROJECT_SOURCE_DIR}")

target_compile_definitions(quillmarsh_common INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_STRICT_ITERATORS
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    $<$<NOT:$<CONFIG:Debug>>:QT_MESSAGELOGCONTEXT>)

target_compile_options(quillmarsh_common INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Wconversion -Wno-sign-conversion
    -fstack-protector-strong
    $<$<BOOL:${QUILLMARSH_WARNINGS_AS_ERRORS}>:-Werror>)

if(WIN32)
    # With MinGW-w64 the checks are in a library of the compiler, which must be linked explicitly.
    # The linker would write the time of the build into the program.
    set(QUILLMARSH_LINK_OPTIONS -fstack-protector-strong LINKER:--no-insert-timestamp)
endif()
target_link_options(quillmarsh_common INTERFACE ${QUILLMARSH_LINK_OPTIONS})

if(QUILLMARSH_SANITIZER)
    target_compile_options(quillmarsh_common INTERFACE
        "-fsanitize=${QUILLMARSH_SANITIZER}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(quillmarsh_common INTERFACE "-fsanitize=${QUILLMARSH_SANITIZER}")
    if(QUILLMARSH_SANITIZER MATCHES "address")
        # Linked statically: a shared runtime would have to be loaded before the preloaded simulated bus.
        target_link_options(quillmarsh_common INTERFACE $<$<CXX_COMPILER_ID:GNU>:-static-libasan>)
    endif()
else()
    target_compile_definitions(quillmarsh_common INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2> _GLIBCXX_ASSERTIONS)
endif()
