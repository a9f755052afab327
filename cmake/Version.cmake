# The version, from one place: the nearest tag vX.Y.Z of a checkout, or what the builder of a package
# says, or the first heading of the changelog. Sets QUILLON_VERSION, as people read it
# ("0.2.0", or "0.2.0+12.gab34cd5" for twelve commits later), and QUILLON_VERSION_NUMBERS ("0.2.0").
set(QUILLON_VERSION "" CACHE STRING "The version, where neither a tag nor the changelog is to tell it")
set(changelog "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
set(number "[0-9]+\\.[0-9]+\\.[0-9]+")
# Not the tag of a checkout that this tree lies in.
if(NOT QUILLON_VERSION AND EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/.git")
  find_program(QUILLON_GIT git)
  if(QUILLON_GIT)
    execute_process(COMMAND "${QUILLON_GIT}" describe --tags --match "v[0-9]*"
                    WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" OUTPUT_VARIABLE described
                    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(described MATCHES "^v(${number})$")
      set(QUILLON_VERSION "${CMAKE_MATCH_1}")
    elseif(described MATCHES "^v(${number})-([0-9]+)-(g[0-9a-f]+)$")
      set(QUILLON_VERSION "${CMAKE_MATCH_1}+${CMAKE_MATCH_2}.${CMAKE_MATCH_3}")
    endif()
  endif()
endif()
if(NOT QUILLON_VERSION)
  file(STRINGS "${changelog}" headings REGEX "^## ${number}")
  list(POP_FRONT headings heading)
  if(heading MATCHES "^## (${number})")
    set(QUILLON_VERSION "${CMAKE_MATCH_1}")
  endif()
endif()
if(NOT QUILLON_VERSION MATCHES "^(${number})([+~][0-9A-Za-z.+~]*)?$")
  message(FATAL_ERROR "\"${QUILLON_VERSION}\" is no version such as 0.2.0 or 0.2.0+12.gab34cd5.")
endif()
set(QUILLON_VERSION_NUMBERS "${CMAKE_MATCH_1}")
