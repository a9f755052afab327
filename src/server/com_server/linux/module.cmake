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
target_link_libraries(QuillonMediaRW PRIVATE quillon_options quillon_com_server quillon_recording)
# It stays loaded once used: the XML libraries, which the host may share, keep functions of its own.
target_link_options(QuillonMediaRW PRIVATE "-Wl,--version-script=${exports}" -Wl,-Bsymbolic
                                           -Wl,-z,nodelete)
if(NOT QUILLON_SANITIZE)
  target_link_options(QuillonMediaRW PRIVATE -Wl,--no-undefined)
endif()
# Hosts get it by its class, so it lies where the program's own libraries do, in the build tree too.
set_target_properties(QuillonMediaRW PROPERTIES
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${QUILLON_LIBRARIES_FROM_PROGRAM}"
  LINK_DEPENDS "${exports}")

# COM for a host: what ole32 and oleaut32 are on Windows, under their plain C names, for any language.
# The server has a copy of its own, as it has on Windows. The number in its name changes when a
# function that hosts call goes away or means something else; one that is added leaves it.
set(exports "${CMAKE_CURRENT_SOURCE_DIR}/linux/host_exports.map")
add_library(quillon_host SHARED $<TARGET_OBJECTS:quillon_win32>
                                $<TARGET_OBJECTS:quillon_com>)
set_target_properties(quillon_host PROPERTIES
  LINKER_LANGUAGE CXX OUTPUT_NAME quillon-media VERSION 0.${PROJECT_VERSION} SOVERSION 0
  EXPORT_NAME QuillonMedia LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib"
  LINK_DEPENDS "${exports}")
target_link_libraries(quillon_host PRIVATE quillon_options quillon_platform quillon_recording)
target_link_options(quillon_host PRIVATE "-Wl,--version-script=${exports}" -Wl,-Bsymbolic
                                         -Wl,-z,nodelete)
target_compile_features(quillon_host INTERFACE cxx_std_20)
foreach(directory "${CMAKE_CURRENT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src/platform/com/include"
                  "${PROJECT_SOURCE_DIR}/src/platform/win32/include")
  target_include_directories(quillon_host INTERFACE "$<BUILD_INTERFACE:${directory}>")
endforeach()
target_include_directories(quillon_host INTERFACE "$<INSTALL_INTERFACE:include/quillon>")
