# Every target is compiled with the same warnings; VELMORA_WERROR makes them errors.
option(VELMORA_WERROR "Treat compiler warnings as errors" ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
if(VELMORA_WERROR)
    add_compile_options(-Werror)
endif()
