include(ModuleList)

# quillmarsh_library(<name> SOURCES ... [PLATFORM ...] [LINK ...] [MOC] [WITHOUT_QT])
#
# Adds a static library of a module, quillmarsh::<name>. SOURCES are relative to the folder. Each PLATFORM
# stem stands for a pair of sources, <stem>_win.cpp and <stem>_linux.cpp, of which the one for the platform is
# compiled. LINK lists external libraries, and those of modules that cmake/ModuleList.cmake allows. MOC is
# needed for classes with Q_OBJECT; libraries without it build faster.
function(quillmarsh_library name)
    cmake_parse_arguments(LIBRARY "MOC;WITHOUT_QT" "" "SOURCES;PLATFORM;LINK" ${ARGN})
    if(WIN32)
        set(suffix win)
    else()
        set(suffix linux)
    endif()
    foreach(stem IN LISTS LIBRARY_PLATFORM)
        list(APPEND LIBRARY_SOURCES "${stem}_${suffix}.cpp")
    endforeach()
    add_library(quillmarsh_${name} STATIC ${LIBRARY_SOURCES})
    add_library(quillmarsh::${name} ALIAS quillmarsh_${name})
    set_target_properties(quillmarsh_${name} PROPERTIES AUTOMOC ${LIBRARY_MOC})
    target_link_libraries(quillmarsh_${name} PUBLIC quillmarsh::common ${LIBRARY_LINK})
    if(NOT LIBRARY_WITHOUT_QT)
        quillmarsh_precompile(quillmarsh_${name})
    endif()
    quillmarsh_check_links(${name} ${LIBRARY_LINK})
endfunction()

# Stops the configuration if a library links one of a module that its own module may not include.
function(quillmarsh_check_links name)
    quillmarsh_module_of_folder("${CMAKE_CURRENT_SOURCE_DIR}" module)
    set_target_properties(quillmarsh_${name} PROPERTIES QUILLMARSH_MODULE ${module})
    foreach(library IN LISTS ARGN)
        if(NOT library MATCHES "^quillmarsh::" OR NOT TARGET ${library})
            continue()
        endif()
        get_target_property(linked ${library} QUILLMARSH_MODULE)
        if(linked AND NOT linked IN_LIST QUILLMARSH_MAY_INCLUDE_${module})
            message(FATAL_ERROR "quillmarsh_${name} links ${library}: \"${module}\" may not include \"${linked}\" "
                "(cmake/ModuleList.cmake)")
        endif()
    endforeach()
endfunction()

# Returns the module to which a folder belongs: the top-level folder.
function(quillmarsh_module_of_folder folder result)
    file(RELATIVE_PATH path "${PROJECT_SOURCE_DIR}" "${folder}")
    string(REGEX REPLACE "/.*" "" module "${path}")
    if(NOT module IN_LIST QUILLMARSH_MODULES)
        message(FATAL_ERROR "The folder ${path} belongs to no module of cmake/ModuleList.cmake")
    endif()
    set(${result} ${module} PARENT_SCOPE)
endfunction()
