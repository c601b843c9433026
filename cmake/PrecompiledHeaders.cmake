# How long a build takes: precompiled headers for everything, and no optimisation of what is not shipped.
# The headers save time and replace no include: scripts/analyse.sh compiles without them
# (CMAKE_DISABLE_PRECOMPILE_HEADERS).
#
# quillmarsh_precompile(<target> [TESTS])
#
# Uses one precompiled header for <target> and for all others of its kind: the product's modules and the
# benchmarks; the simulated world and the harness; with TESTS, programs with GoogleTest. The last two kinds are
# not optimised, which halves the time that a test takes to compile. The target has to link quillmarsh::common
# and Qt5::Core: the compiler refuses a header that was compiled with other options, or with a macro that the
# target does not define.
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
            <gmock/gmock.h> <gtest/gtest.h> "${PROJECT_SOURCE_DIR}/tests/support/QtPrinters.h")
    elseif(module IN_LIST QUILLMARSH_PRODUCT_MODULES OR module STREQUAL "benchmarks")
        set(kind product)
        list(APPEND headers <QHBoxLayout> <QLabel> <QNetworkReply> <QPushButton> <QWidget>)
    else()
        set(kind harness)
    endif()
    if(NOT kind STREQUAL "product")
        # The checks of _FORTIFY_SOURCE are part of the optimiser.
        target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE)
    endif()
    if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
        return()
    endif()

    if(kind STREQUAL "harness")
        # Small sources that seldom change: fewer, larger pieces compile in a fraction of the time.
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
        # Only their headers: linked, they would define QT_NETWORK_LIB and the like.
        foreach(library Qt5::Network Qt5::Gui Qt5::Widgets)
            target_include_directories(${shared} SYSTEM PRIVATE
                $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
        endforeach()
        target_precompile_headers(${shared} PRIVATE ${headers})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()
