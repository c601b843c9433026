# quillmarsh_firmware_source(<name> SERVER <address> [KEYS <key> ...])
#
# An object library quillmarsh::<name> with the firmware source of a program: scheme, host and port of the
# server, and the public keys of the maker. Only programs link it; each test defines its own. The configuration
# fails if a key is not a public key of minisign.
function(quillmarsh_firmware_source name)
    cmake_parse_arguments(SOURCE "" "SERVER" "KEYS" ${ARGN})
    string(REPLACE " " ";" SOURCE_KEYS "${SOURCE_KEYS}")
    string(REPLACE "," ";" SOURCE_KEYS "${SOURCE_KEYS}")
    list(REMOVE_ITEM SOURCE_KEYS "")
    foreach(key IN LISTS SOURCE_KEYS)
        # 42 bytes, the first two of which are "Ed".
        string(LENGTH "${key}" length)
        if(NOT length EQUAL 56 OR NOT key MATCHES "^RW[QRST][A-Za-z0-9+/]+$")
            message(FATAL_ERROR "\"${key}\" is not a public key of minisign: give the second line of its .pub file "
                "(QUILLMARSH_FIRMWARE_KEYS)")
        endif()
    endforeach()
    list(JOIN SOURCE_KEYS "," keys)
    add_library(quillmarsh_${name} OBJECT
        "${PROJECT_SOURCE_DIR}/update/FirmwareKeys.cpp"
        "${PROJECT_SOURCE_DIR}/update/FirmwareServerAddress.cpp")
    add_library(quillmarsh::${name} ALIAS quillmarsh_${name})
    target_link_libraries(quillmarsh_${name} PRIVATE quillmarsh::common Qt5::Core)
    target_compile_definitions(quillmarsh_${name} PRIVATE
        QUILLMARSH_FIRMWARE_SERVER="${SOURCE_SERVER}"
        QUILLMARSH_FIRMWARE_KEYS="${keys}")
endfunction()
