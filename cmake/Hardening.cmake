# What makes a fault hard to use: tests/hardening looks for it in the built program.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "VELMORA${flag}" supported)
    check_cxx_compiler_flag(${flag} ${supported})
    if(${supported})
        add_compile_options(${flag})
    endif()
endforeach()
add_link_options(LINKER:-z,relro,-z,now)
# The checked functions need an optimiser, and the sanitizers check more than they do.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()
