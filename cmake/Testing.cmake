# quillmarsh_test(<name> SOURCES ... LINK ... [GUI] [TIMEOUT seconds] [LABELS ...] [PREFIX text] [SERIAL])
#
# Adds a GoogleTest program; each of its tests is a separate ctest entry. With GUI the program has a QApplication
# on Qt's offscreen platform, otherwise a QCoreApplication. PREFIX is prepended to the names of the entries.
# SERIAL tests, which measure delays, run while no other test does.
include(GoogleTest)
find_package(GTest REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
# The path of the build folder, of which no test makes use: with it the compiler cache would be of no use to a build
# in another folder.
get_target_property(qt_test_definitions Qt5::Test INTERFACE_COMPILE_DEFINITIONS)
list(FILTER qt_test_definitions EXCLUDE REGEX "^QT_TESTCASE_BUILDDIR=")
set_target_properties(Qt5::Test PROPERTIES INTERFACE_COMPILE_DEFINITIONS "${qt_test_definitions}")

# A cross build cannot run programs, so ctest lists their tests instead of the build.
if(CMAKE_CROSSCOMPILING)
    set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
endif()

# quillmarsh_test_environment(<list> [NAME=VALUE ...])
#
# Sets the environment of the tests in <list>, which the discovery of tests has filled: the variables of all
# tests, and the given ones. This happens when ctest starts, because gtest_discover_tests() uses only the first
# item of a list among its properties.
function(quillmarsh_test_environment list)
    # Under Wine the windows are real ones, because Wine does not pass Qt's variables on.
    set(environment
        QT_QPA_PLATFORM=offscreen
        LC_ALL=C.UTF-8
        LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks-of-libraries.supp:print_suppressions=0
        ${ARGN})
    set(afterwards "${CMAKE_CURRENT_BINARY_DIR}/${list}_environment.cmake")
    file(WRITE "${afterwards}" "set_tests_properties(\${${list}} PROPERTIES ENVIRONMENT \"${environment}\")\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${afterwards}")
endfunction()

# The printers for Qt's types must be declared before the first test that compares them.
function(quillmarsh_print_qt_types target)
    quillmarsh_precompile(${target} TESTS)
    if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
        target_compile_options(${target} PRIVATE -include "${PROJECT_SOURCE_DIR}/tests/common/QtPrinters.h")
    endif()
endfunction()

function(quillmarsh_test name)
    cmake_parse_arguments(TEST "GUI;SERIAL" "TIMEOUT;PREFIX" "SOURCES;LINK;LABELS" ${ARGN})
    # Only for tests that hang: it must be long enough for pauses of the machine and a second attempt.
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    if(TEST_GUI)
        set(main "${PROJECT_SOURCE_DIR}/tests/common/GuiTestMain.cpp")
    else()
        set(main "${PROJECT_SOURCE_DIR}/tests/common/CoreTestMain.cpp")
    endif()
    add_executable(${name} ${TEST_SOURCES} ${main})
    target_link_libraries(${name} PRIVATE quillmarsh::common GTest::gtest GTest::gmock Qt5::Test
        quillmarsh::test_platform quillmarsh::another_attempt quillmarsh::running_time ${TEST_LINK})
    quillmarsh_print_qt_types(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
    set(labels "")
    if(TEST_LABELS)
        set(labels LABELS "${TEST_LABELS}")
    endif()
    set(prefix "")
    if(TEST_PREFIX)
        set(prefix TEST_PREFIX "${TEST_PREFIX}")
    endif()
    gtest_discover_tests(${name}
        DISCOVERY_TIMEOUT 300
        ${prefix}
        PROPERTIES
            ${labels}
            RUN_SERIAL ${TEST_SERIAL}
            TIMEOUT ${TEST_TIMEOUT})
    quillmarsh_test_environment(${name}_TESTS)
endfunction()

# quillmarsh_own_network_test(...): like quillmarsh_test(), for tests that need the fixed port of the firmware
# server. Each runs in a network namespace of its own. If namespaces are not allowed, they run one after the other.
function(quillmarsh_own_network_test)
    if(WIN32)
        quillmarsh_test(${ARGV})
        return()
    endif()
    set(CMAKE_CROSSCOMPILING_EMULATOR
        "${PROJECT_SOURCE_DIR}/harness/process/in-own-network.sh" ${CMAKE_CROSSCOMPILING_EMULATOR})
    quillmarsh_test(${ARGV})
endfunction()
