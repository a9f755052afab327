# The version, from one place. Sets QUILLON_VERSION, as people read it, and QUILLON_VERSION_NUMBERS
# ("0.2.0"). What the builder of a package says comes first, then the nearest tag vX.Y.Z or vX.Y.Z-rcN of a
# checkout, then the first heading of the changelog. Debian sorts them as they follow each other:
#   0.2.0~315.gab34cd5e       before the release and the first tag: the 315th commit
#   0.2.0~dev                 the same, made of a tree without history
#   0.2.0~rc1                 tag v0.2.0-rc1
#   0.2.0                     tag v0.2.0, or a heading with a date and no tag
#   0.2.0+12.gab34cd5e        twelve commits after the tag
# Where tracked files are not as they are in the commit, ".dirty" follows; "+dirty" where nothing but
# the release stands before it.
set(QUILLON_VERSION "" CACHE STRING "The version, where neither a tag nor the changelog is to tell it")
set(changelog "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
set(number "[0-9]+\\.[0-9]+\\.[0-9]+")

# quillon_git(OUTPUT argument...): what git prints; nothing when it fails.
function(quillon_git output)
  execute_process(COMMAND "${QUILLON_GIT}" ${ARGN} WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}"
                  OUTPUT_VARIABLE printed OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  set(${output} "${printed}" PARENT_SCOPE)
endfunction()

if(NOT QUILLON_VERSION)
  set(described "")
  set(commit "")
  # Not the tag of a checkout that this tree lies in.
  if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/.git")
    find_program(QUILLON_GIT git)
    if(QUILLON_GIT)
      # A length of their own: else it grows with the number of objects that a clone happens to have.
      quillon_git(described describe --tags --dirty --abbrev=8 --match "v[0-9]*")
      quillon_git(commit describe --always --dirty --abbrev=8 --exclude "*")
      quillon_git(count rev-list --count HEAD)
    endif()
  endif()
  set(dirty "")
  if(commit MATCHES "-dirty$")
    set(dirty ".dirty")
    string(REGEX REPLACE "-dirty$" "" commit "${commit}")
    string(REGEX REPLACE "-dirty$" "" described "${described}")
  endif()
  if(described)
    if(NOT described MATCHES "^v(${number})(-rc[0-9]+)?(-([0-9]+)-(g[0-9a-f]+))?$")
      message(FATAL_ERROR "The tag in \"${described}\" is none of a version, such as v0.2.0 or v0.2.0-rc1.")
    endif()
    set(QUILLON_VERSION "${CMAKE_MATCH_1}")
    set(commits "${CMAKE_MATCH_4}.${CMAKE_MATCH_5}")
    string(REPLACE "-" "~" candidate "${CMAKE_MATCH_2}")
    string(APPEND QUILLON_VERSION "${candidate}")
    if(NOT commits STREQUAL ".")
      string(APPEND QUILLON_VERSION "+${commits}")
    endif()
  else()
    file(STRINGS "${changelog}" headings REGEX "^## ${number}")
    list(POP_FRONT headings heading)
    if(heading MATCHES "^## (${number})")
      set(QUILLON_VERSION "${CMAKE_MATCH_1}")
      if(heading MATCHES "\\(not released\\)")
        if(commit)
          string(APPEND QUILLON_VERSION "~${count}.g${commit}")
        else()
          string(APPEND QUILLON_VERSION "~dev")
        endif()
      endif()
    endif()
  endif()
  if(dirty AND QUILLON_VERSION MATCHES "^${number}$")
    set(dirty "+dirty")
  endif()
  string(APPEND QUILLON_VERSION "${dirty}")
endif()
if(NOT QUILLON_VERSION MATCHES "^(${number})([+~][0-9A-Za-z.+~]*)?$")
  message(FATAL_ERROR "\"${QUILLON_VERSION}\" is no version such as 0.2.0 or 0.2.0+12.gab34cd5e.")
endif()
set(QUILLON_VERSION_NUMBERS "${CMAKE_MATCH_1}")
