include(GNUInstallDirs)
set(headers src/server/com_server/include/ src/platform/win32/include/ src/platform/com/include/)
if(WIN32)
  # One directory, which lies wherever the workstation's other files do.
  install(TARGETS QuillonMediaRW RUNTIME DESTINATION .)
  install(DIRECTORY ${headers} DESTINATION include
          FILES_MATCHING REGEX "/server/com_server/.*\\.(h|inc)$"
                         REGEX "/platform/(com|win32|com/com_ptr|win32/unclaim_names)\\.h$")
  install(FILES packaging/windows/QuillonMediaConfig.cmake DESTINATION cmake)
  # All pages, because they refer to each other.
  install(FILES README.md CHANGELOG.md DESTINATION .)
  install(DIRECTORY docs DESTINATION . PATTERN shown.txt EXCLUDE)
  install(FILES resources/stylesheets/text.xsl resources/stylesheets/html.xsl
          DESTINATION stylesheets)
  return()
endif()
install(TARGETS quillon RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Hosts do not link it: they ask for its class.
install(TARGETS QuillonMediaRW LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/quillon)
install(DIRECTORY apps/quillon/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        FILES_MATCHING PATTERN "*.1")
# What hosts are built with: the headers, COM, and how CMake and pkg-config find them.
install(TARGETS quillon_host EXPORT QuillonMedia LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillon
        FILES_MATCHING REGEX "/(server|platform/com|platform/win32)/.*\\.(h|inc)$"
                       REGEX "/platform/(com|win32)\\.h$")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/QuillonMedia")
install(EXPORT QuillonMedia NAMESPACE QuillonMedia:: FILE QuillonMediaConfig.cmake
        DESTINATION "${package}")
include(CMakePackageConfigHelpers)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/QuillonMediaConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/QuillonMediaConfigVersion.cmake" DESTINATION "${package}")
# The prefix is known for certain only when it is installed.
install(CODE "
  set(CMAKE_INSTALL_FULL_LIBDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\")
  set(CMAKE_INSTALL_FULL_INCLUDEDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_INCLUDEDIR}\")
  set(PROJECT_VERSION \"${PROJECT_VERSION}\")
  configure_file(\"${PROJECT_SOURCE_DIR}/cmake/quillon-media.pc.in\"
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/quillon-media.pc\" @ONLY)")
# The program finds them from its own place; hosts of the media object name them by path.
install(DIRECTORY resources/stylesheets/
        DESTINATION "${CMAKE_INSTALL_DATADIR}/quillon/stylesheets"
        FILES_MATCHING PATTERN "*.xsl" PATTERN "*.css")
