include(GNUInstallDirs)
if(NOT WIN32)
  install(TARGETS quillon RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(TARGETS QuillonMediaRW LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY apps/quillon/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
          FILES_MATCHING PATTERN "*.1")
endif()
# The program finds them from its own place; hosts of the media object name them by path.
install(DIRECTORY resources/stylesheets/
        DESTINATION "${CMAKE_INSTALL_DATADIR}/quillon/stylesheets"
        FILES_MATCHING PATTERN "*.xsl")
