# The modules of the project: the only list of their names and of the modules that each may include. A module
# is a top-level folder with its name. The build (cmake/Module.cmake) uses this list, and so do the checks in
# scripts/, through cmake/print-modules.cmake.
#
# quillmarsh_declare_module(<name> [PRODUCT] [MAY_INCLUDE <module> ...])
#
# PRODUCT modules are shipped to users; they are subject to the static analysis and to the check of the guides.
# A module may always include its own headers.
macro(quillmarsh_declare_module name)
    cmake_parse_arguments(DECLARED "PRODUCT" "" "MAY_INCLUDE" ${ARGN})
    list(APPEND QUILLMARSH_MODULES ${name})
    if(DECLARED_PRODUCT)
        list(APPEND QUILLMARSH_PRODUCT_MODULES ${name})
    endif()
    set(QUILLMARSH_MAY_INCLUDE_${name} ${name} ${DECLARED_MAY_INCLUDE})
endmacro()

set(QUILLMARSH_MODULES "")
set(QUILLMARSH_PRODUCT_MODULES "")

quillmarsh_declare_module(support PRODUCT)
quillmarsh_declare_module(session PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(signature PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(widgets PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(devices PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(download PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(driver PRODUCT MAY_INCLUDE support)
quillmarsh_declare_module(iap PRODUCT MAY_INCLUDE support session)
quillmarsh_declare_module(update PRODUCT MAY_INCLUDE support session signature devices download)
quillmarsh_declare_module(checks PRODUCT MAY_INCLUDE support signature devices download driver update)
quillmarsh_declare_module(report PRODUCT MAY_INCLUDE support session devices driver update checks)
quillmarsh_declare_module(resources PRODUCT)
quillmarsh_declare_module(app PRODUCT MAY_INCLUDE
    support session signature widgets devices download driver iap update checks report resources)
quillmarsh_declare_module(cli PRODUCT MAY_INCLUDE
    support session signature devices download driver iap update checks report resources)
quillmarsh_declare_module(simulator)
quillmarsh_declare_module(harness MAY_INCLUDE simulator devices support)
quillmarsh_declare_module(demo MAY_INCLUDE harness simulator devices)
quillmarsh_declare_module(benchmarks MAY_INCLUDE ${QUILLMARSH_MODULES})
quillmarsh_declare_module(tests MAY_INCLUDE ${QUILLMARSH_MODULES})
