# The scripts become constants of the code.
set(scripts app_id class)
foreach(script IN LISTS scripts)
  set(file "${CMAKE_CURRENT_SOURCE_DIR}/scripts/${script}.rgs")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  string(TOUPPER "${script}" name)
  file(READ "${file}" QUILLON_${name}_SCRIPT)
endforeach()
configure_file(linux/registrar_scripts.h.in "${CMAKE_CURRENT_BINARY_DIR}/registrar_scripts.h" @ONLY)
target_sources(quillon_com_server PRIVATE linux/own_resources.cpp)
target_include_directories(quillon_com_server PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")

# The module that hosts load. All but the four exports stays inside: the host may have a copy of the
# platform layer of its own.
set(exports "${CMAKE_CURRENT_SOURCE_DIR}/linux/exports.map")
add_library(QuillonMediaRW MODULE exports.cpp)
target_include_directories(QuillonMediaRW PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
target_link_libraries(QuillonMediaRW PRIVATE quillon_options quillon_com_server)
# It stays loaded once used: the XML libraries, which the host may share, keep functions of its own.
target_link_options(QuillonMediaRW PRIVATE "-Wl,--version-script=${exports}" -Wl,-Bsymbolic
                                           -Wl,-z,nodelete)
if(NOT QUILLON_SANITIZE)
  target_link_options(QuillonMediaRW PRIVATE -Wl,--no-undefined)
endif()
set_target_properties(QuillonMediaRW PROPERTIES
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib" LINK_DEPENDS "${exports}")
