# A platform that does nothing: that Velmora links with it shows that the headers name everything a platform provides.
add_library(platform STATIC "${CMAKE_CURRENT_LIST_DIR}/empty_platform.cpp")
target_include_directories(platform PUBLIC "${CMAKE_CURRENT_LIST_DIR}/../../platform/include")
target_link_libraries(platform PUBLIC pkg::efl)
foreach(part IN ITEMS services framework)
    add_library(platform-${part} ALIAS platform)
endforeach()
