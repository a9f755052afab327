# The DLL: the four exports, and as resources the string table, the registrar scripts and the type
# library. Its runtime is linked in, so that it needs no DLL but those of Windows.
enable_language(RC)
find_program(QUILLON_WIDL NAMES i686-w64-mingw32-widl REQUIRED)
find_program(QUILLON_PERL NAMES perl REQUIRED)

target_sources(quillon_com_server PRIVATE windows/own_resources.cpp)
# Compiles the type library, which refers to the table of the operations, and before it the stand-in
# for the one that it imports: what is installed here makes no difference to either.
set(idl "${CMAKE_CURRENT_SOURCE_DIR}/windows")
set(imported_dir "${CMAKE_CURRENT_BINARY_DIR}/imported")
set(imported "${imported_dir}/stdole2.tlb")
set(library "${CMAKE_CURRENT_BINARY_DIR}/QuillonMediaRW.tlb")
file(MAKE_DIRECTORY "${imported_dir}")
add_custom_command(
  OUTPUT "${imported}"
  COMMAND "${QUILLON_WIDL}" -t -m32 -o "${imported}" "${idl}/stdole2.idl"
  DEPENDS "${idl}/stdole2.idl" "${idl}/automation.idl"
  VERBATIM)
add_custom_command(
  OUTPUT "${library}"
  COMMAND "${QUILLON_WIDL}" -t -m32 -I "${CMAKE_CURRENT_SOURCE_DIR}/include" -L "${imported_dir}"
          -o "${library}" "${idl}/QuillonMediaRW.idl"
  COMMAND "${QUILLON_PERL}" "${idl}/without_time.pl" "${library}"
  DEPENDS "${imported}" "${idl}/QuillonMediaRW.idl" "${idl}/automation.idl"
          "${idl}/without_time.pl"
          "${CMAKE_CURRENT_SOURCE_DIR}/include/server/com_server/identities.inc"
          "${CMAKE_CURRENT_SOURCE_DIR}/include/server/com_server/operations.inc"
  VERBATIM)

add_library(QuillonMediaRW SHARED exports.cpp windows/load.cpp windows/QuillonMediaRW.def
            windows/QuillonMediaRW.rc "${library}")
target_include_directories(QuillonMediaRW PRIVATE
  "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_CURRENT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}/resources")
target_link_libraries(QuillonMediaRW PRIVATE quillon_options quillon_com_server)
# Two builds of one commit make the same DLL: no time in its header.
target_link_options(QuillonMediaRW PRIVATE -static -static-libgcc -static-libstdc++
                    -Wl,--no-undefined -Wl,--no-insert-timestamp)
set(version QUILLON_VERSION=${QUILLON_VERSION}
  QUILLON_VERSION_NUMBERS=${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},${PROJECT_VERSION_PATCH},0)
set_source_files_properties(windows/QuillonMediaRW.rc PROPERTIES
  COMPILE_DEFINITIONS "${version}" OBJECT_DEPENDS
  "${library};${PROJECT_SOURCE_DIR}/resources/messages.inc;${CMAKE_CURRENT_SOURCE_DIR}/scripts/app_id.rgs;${CMAKE_CURRENT_SOURCE_DIR}/scripts/class.rgs")
set_target_properties(QuillonMediaRW PROPERTIES PREFIX "")
