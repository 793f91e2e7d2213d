# Provides only the headers: if Velmora compiles, they declare everything that it uses.
add_library(platform INTERFACE)
target_include_directories(platform INTERFACE "${CMAKE_CURRENT_LIST_DIR}/../../platform/include")
target_link_libraries(platform INTERFACE pkg::efl)
target_link_options(platform INTERFACE LINKER:--warn-unresolved-symbols)
add_library(platform-services ALIAS platform)
add_library(platform-framework ALIAS platform)
