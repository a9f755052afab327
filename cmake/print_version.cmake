# cmake -P cmake/print_version.cmake, in the root of the tree: the version, for scripts.
include("${CMAKE_CURRENT_LIST_DIR}/Version.cmake")
execute_process(COMMAND "${CMAKE_COMMAND}" -E echo "${QUILLON_VERSION}")
