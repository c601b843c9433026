# quillmarsh_windows_resources(<target> <description>)
#
# Adds icon, version and manifest to a Windows program; does nothing on other systems.
function(quillmarsh_windows_resources target description)
    if(NOT WIN32)
        return()
    endif()
    set(program ${target})
    configure_file("${PROJECT_SOURCE_DIR}/packaging/windows/quillmarsh.rc.in" ${target}.rc @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
endfunction()
