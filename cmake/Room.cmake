# quillmarsh_room(<name> SOURCES ... [PLATFORM ...] [LINK ...])
#
# One static library for one folder. SOURCES are relative to the folder. Each PLATFORM stem names
# a pair of sources, <stem>_win.cpp and <stem>_linux.cpp, of which the right one is taken. LINK
# lists what the room may include: other rooms (quillmarsh::name) and outside libraries.
function(quillmarsh_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;PLATFORM;LINK" ${ARGN})
    if(WIN32)
        set(suffix win)
    else()
        set(suffix linux)
    endif()
    foreach(stem IN LISTS ROOM_PLATFORM)
        list(APPEND ROOM_SOURCES "${stem}_${suffix}.cpp")
    endforeach()
    add_library(quillmarsh_${name} STATIC ${ROOM_SOURCES})
    add_library(quillmarsh::${name} ALIAS quillmarsh_${name})
    target_link_libraries(quillmarsh_${name} PUBLIC quillmarsh::common ${ROOM_LINK})
endfunction()
