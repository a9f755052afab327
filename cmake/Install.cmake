include(GNUInstallDirs)
install(TARGETS quillon RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS QuillonMediaRW LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES apps/quillon/man/quillon.1 apps/quillon/man/quillon-create.1
              apps/quillon/man/quillon-write.1 apps/quillon/man/quillon-publish.1
              apps/quillon/man/quillon-disc.1 apps/quillon/man/quillon-wipe.1
              apps/quillon/man/quillon-register.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
