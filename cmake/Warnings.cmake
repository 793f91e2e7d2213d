# Compiler warnings for all targets. They are errors only in the presets, so that other compilers can build the project.
option(VELMORA_WERROR "Treat compiler warnings as errors" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
if(VELMORA_WERROR)
    add_compile_options(-Werror)
endif()

# GCC 12 reports a false overlap for an inlined "x" + std::to_string(n) at -O3 (fixed in GCC 13). Other build types keep
# the warning.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
        AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options($<$<CONFIG:Release>:-Wno-restrict>)
endif()
