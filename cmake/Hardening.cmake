# Exploit mitigations. tests/hardening verifies them in the built program.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fstack-clash-protection)
elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    add_compile_options(-fstack-clash-protection -mbranch-protection=standard)
endif()
add_link_options(LINKER:-z,relro,-z,now)
# _FORTIFY_SOURCE needs optimisation. It is left out with sanitizers, which check more.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()
