# pkg_config_library(<name> <module>...): creates an interface library pkg::<name> from pkg-config modules.
#
# CMake's IMPORTED_TARGET rejects Debian's EFL, whose .pc files name a missing folder (/usr/include/ector-1). This
# function uses the plain variables instead, without missing folders.
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
