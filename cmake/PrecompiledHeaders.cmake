# precompile_headers(<target> <header>... | REUSE_FROM <target>): compiles the libraries' large headers once. Off where
# each file shall be seen to include what it uses.
option(VELMORA_PRECOMPILE "Precompile the libraries' headers" OFF)

function(precompile_headers target)
    if(VELMORA_PRECOMPILE AND ARGV1 STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} ${ARGN})
    elseif(VELMORA_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
