# One source folder is one target. Its public headers lie in <folder>/include, which only the
# targets that link it see: an include that points upwards is not found, and does not build.
# A folder of the Linux layers may share more with those that stand on it, but with no one above the
# layers: headers in <folder>/internal, for those that link the target NAME_internal.

add_library(quillon_options INTERFACE)
target_compile_options(quillon_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlaps in std::string that are not there (its bug 105651).
  target_compile_options(quillon_options INTERFACE -Wno-restrict)
endif()
if(QUILLON_SANITIZE)
  target_compile_options(quillon_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLON_FUZZ)
  target_compile_options(quillon_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  target_link_options(quillon_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  target_compile_definitions(quillon_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN
    NOMINMAX _WIN32_WINNT=0x0501 __USE_MINGW_ANSI_STDIO=1)
endif()

# quillon_folder(NAME [DIRS dir...] [DEPENDS target...] [USES target...] [REGISTERED_BY symbol])
# Makes the static library NAME of the .cpp files in this folder (and in DIRS), found by a glob so
# that none is forgotten. What it USES is not seen by those that link it. The symbol lies in the file
# that registers what the folder offers when a program starts; nothing refers to it, so the linker is
# told to take it.
function(quillon_folder name)
  cmake_parse_arguments(ARG "" "REGISTERED_BY" "DIRS;DEPENDS;USES" ${ARGN})
  set(sources)
  foreach(dir IN ITEMS . LISTS ARG_DIRS)
    file(GLOB found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp")
    list(APPEND sources ${found})
  endforeach()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/include"
                                       PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE quillon_options ${ARG_USES} PUBLIC ${ARG_DEPENDS})
    if(ARG_REGISTERED_BY)
      target_link_options(${name} INTERFACE "LINKER:--undefined=${ARG_REGISTERED_BY}")
    endif()
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${CMAKE_CURRENT_SOURCE_DIR}/include")
    target_link_libraries(${name} INTERFACE ${ARG_DEPENDS})
  endif()
  set(internal "${CMAKE_CURRENT_SOURCE_DIR}/internal")
  if(IS_DIRECTORY "${internal}")
    add_library(${name}_internal INTERFACE)
    target_include_directories(${name}_internal INTERFACE "${internal}")
    target_link_libraries(${name}_internal INTERFACE ${name})
    if(sources)
      target_include_directories(${name} PRIVATE "${internal}")
    endif()
  endif()
endfunction()

# quillon_test(NAME LABEL label [DIRS dir...] DEPENDS target... [NOT_ON_WINDOWS file...])
# Makes a GoogleTest program of the .cpp files in this folder, or in DIRS, that links only what it is
# given. Files that need the layer's substitutes or Linux programs are left out of the Windows build.
function(quillon_test name)
  cmake_parse_arguments(ARG "" "LABEL" "DIRS;DEPENDS;NOT_ON_WINDOWS" ${ARGN})
  set(patterns "*.cpp")
  if(ARG_DIRS)
    list(TRANSFORM ARG_DIRS APPEND "/*.cpp" OUTPUT_VARIABLE patterns)
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  if(WIN32)
    list(TRANSFORM ARG_NOT_ON_WINDOWS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    list(REMOVE_ITEM sources ${ARG_NOT_ON_WINDOWS})
  endif()
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE quillon_options ${ARG_DEPENDS} GTest::gtest_main)
  # Tests compile faster so, and GCC 12 does not warn of uninitialised strings that are none.
  target_compile_options(${name} PRIVATE -O1)
  if(WIN32)
    # Run under Wine by tests/com_client/server_test.py; needs no DLL beside Windows' own.
    target_link_options(${name} PRIVATE -static)
    return()
  endif()
  gtest_discover_tests(${name} PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 300
                       DISCOVERY_TIMEOUT 60)
endfunction()
