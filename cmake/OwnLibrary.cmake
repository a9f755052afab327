# Libraries of the product's own that are loaded when something first needs them. They lie where
# openOwnLibrary (win32/own_library.h) finds them from the program: in the build tree as after an
# installation.
include(GNUInstallDirs)
file(RELATIVE_PATH QUILLON_LIBRARIES_FROM_PROGRAM "/${CMAKE_INSTALL_BINDIR}"
     "/${CMAKE_INSTALL_LIBDIR}/quillon")

# quillon_own_library(NAME EXPORTS symbol COMPONENT component SOURCES file... LINKS target...)
# Makes libquillon_NAME.so, the target quillon_NAME_library, which exports the symbol and nothing
# else: what it has of the layer is a copy.
function(quillon_own_library name)
  cmake_parse_arguments(ARG "" "EXPORTS;COMPONENT" "SOURCES;LINKS" ${ARGN})
  set(target quillon_${name}_library)
  set(exports "${CMAKE_CURRENT_BINARY_DIR}/${name}_exports.map")
  file(CONFIGURE OUTPUT "${exports}" CONTENT "{ global: ${ARG_EXPORTS}; local: *; };\n")
  add_library(${target} MODULE ${ARG_SOURCES})
  target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
  target_link_libraries(${target} PRIVATE quillon_options ${ARG_LINKS})
  target_link_options(${target} PRIVATE "-Wl,--version-script=${exports}" -Wl,-Bsymbolic
                                        -Wl,-z,nodelete -Wl,--as-needed)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME quillon_${name} LINK_DEPENDS "${exports}"
    LIBRARY_OUTPUT_DIRECTORY
      "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${QUILLON_LIBRARIES_FROM_PROGRAM}")
  install(TARGETS ${target}
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/quillon" COMPONENT ${ARG_COMPONENT})
endfunction()
