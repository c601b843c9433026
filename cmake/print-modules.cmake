# Prints the list of modules for scripts, one on each line: "support product: support", "demo: demo harness".
# Usage: cmake -P cmake/print-modules.cmake
cmake_minimum_required(VERSION 3.24)
include("${CMAKE_CURRENT_LIST_DIR}/ModuleList.cmake")
foreach(module IN LISTS QUILLMARSH_MODULES)
    set(kind "")
    if(module IN_LIST QUILLMARSH_PRODUCT_MODULES)
        set(kind " product")
    endif()
    list(JOIN QUILLMARSH_MAY_INCLUDE_${module} " " allowed)
    # Not message(), which writes to standard error.
    execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${module}${kind}: ${allowed}")
endforeach()
