# Shortens the build: precompiled headers for everything, and no optimisation of code that is not shipped.
# Sources must still include all headers that they need: scripts/analyse.sh compiles without precompiled headers
# (CMAKE_DISABLE_PRECOMPILE_HEADERS).
#
# Only the headers: linking the libraries would define macros such as QT_NETWORK_LIB.
function(quillmarsh_find_precompiled_headers target)
    foreach(library Qt5::Network Qt5::Gui Qt5::Widgets)
        target_include_directories(${target} SYSTEM PRIVATE
            $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
    endforeach()
endfunction()

# quillmarsh_precompile(<target> [TESTS])
#
# Uses one precompiled header for <target> and all others of its kind: the product's modules and the
# benchmarks; the simulator and the test harness; with TESTS, programs with GoogleTest. The last two kinds are
# not optimised, which halves the time to compile a test. The target must link quillmarsh::common and
# Qt5::Core: the compiler rejects a header that was compiled with other options, or with a macro that the target
# does not define.
function(quillmarsh_precompile target)
    cmake_parse_arguments(PRECOMPILE "TESTS" "" "" ${ARGN})
    set(headers
        <algorithm> <array> <chrono> <functional> <memory> <optional> <string> <thread> <vector>
        <QByteArray> <QCoreApplication> <QDebug> <QDir> <QFile> <QJsonArray> <QJsonDocument> <QJsonObject>
        <QObject> <QProcess> <QString> <QStringList> <QThread> <QTimer> <QVector>)
    set(libraries "")
    quillmarsh_module_of_folder("${CMAKE_CURRENT_SOURCE_DIR}" module)
    if(PRECOMPILE_TESTS)
        set(kind tests)
        set(libraries GTest::gtest GTest::gmock)
        list(APPEND headers <QElapsedTimer> <QTemporaryDir>
            <gmock/gmock.h> <gtest/gtest.h> "${PROJECT_SOURCE_DIR}/tests/common/QtPrinters.h")
    elseif(module IN_LIST QUILLMARSH_PRODUCT_MODULES OR module STREQUAL "benchmarks")
        set(kind product)
        list(APPEND headers <QHBoxLayout> <QLabel> <QNetworkReply> <QPushButton> <QWidget>)
    else()
        set(kind harness)
    endif()
    if(NOT kind STREQUAL "product")
        # _FORTIFY_SOURCE needs optimisation.
        target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE)
    endif()
    if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
        return()
    endif()

    if(kind STREQUAL "harness")
        # Small sources that rarely change: as a unity build they compile in a fraction of the time.
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_UNIQUE_ID QUILLMARSH_UNITY)
    endif()
    set(shared quillmarsh_precompiled_${kind})
    if(NOT TARGET ${shared})
        file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/${shared}.cpp" CONTENT "// Nothing but the headers.\n")
        add_library(${shared} OBJECT "${PROJECT_BINARY_DIR}/${shared}.cpp")
        target_link_libraries(${shared} PRIVATE quillmarsh::common Qt5::Core ${libraries})
        if(NOT kind STREQUAL "product")
            target_compile_options(${shared} PRIVATE -O0 -U_FORTIFY_SOURCE)
        endif()
        quillmarsh_find_precompiled_headers(${shared})
        target_precompile_headers(${shared} PRIVATE ${headers})
    endif()
    # Newer versions of Clang look for the headers once more where the precompiled header is used.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        quillmarsh_find_precompiled_headers(${target})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()
