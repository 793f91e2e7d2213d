# Every target is compiled with the same warnings. They are errors in our presets, not for someone who just builds
# with another compiler.
option(VELMORA_WERROR "Treat compiler warnings as errors" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
if(VELMORA_WERROR)
    add_compile_options(-Werror)
endif()

# GCC 12 takes "x" + std::to_string(n) for overlapping memory once -O3 has inlined it (its own fault, mended in 13).
# The other build types go on looking for real overlaps.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
        AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options($<$<CONFIG:Release>:-Wno-restrict>)
endif()
