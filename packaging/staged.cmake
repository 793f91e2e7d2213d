# Run by CPack before it makes the packages. Makes their content depend only on the sources and the tools, not on the
# time, the umask or the folder, and adds a bill of materials to each package.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND git -C "${CPACK_VELMORA_SOURCES}" log -1 --format=%ct OUTPUT_VARIABLE date
        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ENV{SOURCE_DATE_EPOCH} "${date}")
endif()
foreach(component ${CPACK_COMPONENTS_ALL})
    set(staged "${CPACK_TEMPORARY_DIRECTORY}/${component}")
    string(TOUPPER "${component}" upper)
    set(name "${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
    set(objects "(src|platform)/")
    if(component STREQUAL simulator)
        set(objects "simulator/")
    endif()
    execute_process(COMMAND "${CPACK_VELMORA_SOURCES}/packaging/sbom" "${name}" "${CPACK_PACKAGE_VERSION}" "${CPACK_VELMORA_BINARIES}"
            "${staged}" "${CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS}" "${objects}"
        OUTPUT_FILE "${staged}/usr/share/doc/${name}/${name}.spdx.json" COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND chmod -R u=rwX,go=rX "${staged}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
