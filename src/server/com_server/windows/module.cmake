# The DLL: the four exports, and as resources the string table, the registrar scripts and the type
# library. Its runtime is linked in, so that it needs no DLL but those of Windows.
enable_language(RC)
find_program(QUILLON_WIDL NAMES i686-w64-mingw32-widl REQUIRED)
find_path(QUILLON_STDOLE_DIR stdole2.tlb NO_CMAKE_FIND_ROOT_PATH
  PATHS /usr/lib/i386-linux-gnu/wine/i386-windows /usr/lib/i386-linux-gnu/wine
  DOC "Where Wine keeps the type library that others import; without it the base types are our own")

target_sources(quillon_com_server PRIVATE windows/own_resources.cpp)
# Compiles the type library, which refers to the table of the operations.
set(library_text "${CMAKE_CURRENT_SOURCE_DIR}/windows/QuillonMediaRW.idl")
set(library "${CMAKE_CURRENT_BINARY_DIR}/QuillonMediaRW.tlb")
set(widl_options -t -m32 -I "${CMAKE_CURRENT_SOURCE_DIR}/include")
if(QUILLON_STDOLE_DIR)
  list(APPEND widl_options -D QUILLON_IMPORT_STDOLE -L "${QUILLON_STDOLE_DIR}")
endif()
add_custom_command(
  OUTPUT "${library}"
  COMMAND "${QUILLON_WIDL}" ${widl_options} -o "${library}" "${library_text}"
  DEPENDS "${library_text}"
          "${CMAKE_CURRENT_SOURCE_DIR}/include/server/com_server/identities.inc"
          "${CMAKE_CURRENT_SOURCE_DIR}/include/server/com_server/operations.inc"
  VERBATIM)

add_library(QuillonMediaRW SHARED exports.cpp windows/load.cpp windows/QuillonMediaRW.def
            windows/QuillonMediaRW.rc "${library}")
target_include_directories(QuillonMediaRW PRIVATE
  "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_CURRENT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}/resources")
target_compile_definitions(QuillonMediaRW PRIVATE
  QUILLON_VERSION=${PROJECT_VERSION}
  QUILLON_VERSION_NUMBERS=${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},${PROJECT_VERSION_PATCH},0)
target_link_libraries(QuillonMediaRW PRIVATE quillon_options quillon_com_server)
target_link_options(QuillonMediaRW PRIVATE -static -static-libgcc -static-libstdc++
                    -Wl,--no-undefined)
set_source_files_properties(windows/QuillonMediaRW.rc PROPERTIES OBJECT_DEPENDS
  "${library};${PROJECT_SOURCE_DIR}/resources/messages.inc;${CMAKE_CURRENT_SOURCE_DIR}/scripts/app_id.rgs;${CMAKE_CURRENT_SOURCE_DIR}/scripts/class.rgs")
set_target_properties(QuillonMediaRW PROPERTIES PREFIX "")
