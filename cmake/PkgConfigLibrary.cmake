# pkg_config_library(<name> <module>...): an interface library pkg::<name> of pkg-config modules.
#
# CMake's own IMPORTED_TARGET refuses Debian's EFL, whose .pc files name a folder that does not exist
# (/usr/include/ector-1), so the plain variables are used and missing folders left out.
find_package(PkgConfig REQUIRED)

function(pkg_config_library name)
    pkg_check_modules(${name} REQUIRED ${ARGN})
    add_library(pkg_${name} INTERFACE)
    add_library(pkg::${name} ALIAS pkg_${name})
    foreach(folder IN LISTS ${name}_INCLUDE_DIRS)
        if(EXISTS "${folder}")
            target_include_directories(pkg_${name} SYSTEM INTERFACE "${folder}")
        endif()
    endforeach()
    target_link_libraries(pkg_${name} INTERFACE ${${name}_LINK_LIBRARIES})
endfunction()
