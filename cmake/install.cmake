# What is installed, by component: "cli" is the command line alone, "window" what the window needs
# beside that. Nothing holds the prefix: the tree may be moved.
set(resources ${PROJECT_SOURCE_DIR}/src/resources)
set(shared ${CMAKE_INSTALL_DATADIR}/velkor)

install(TARGETS velkor-cli DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)
install(FILES ${resources}/lt.txt ${resources}/ltr.txt ${resources}/targets.toml
        DESTINATION ${shared} COMPONENT cli)
install(DIRECTORY ${resources}/schema ${resources}/statements DESTINATION ${shared} COMPONENT cli)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/package/velkor-config.cmake
        DESTINATION ${CMAKE_INSTALL_DATADIR}/cmake/velkor COMPONENT cli)

if(VELKOR_WINDOW)
  install(TARGETS velkor DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT window)
  install(DIRECTORY ${resources}/help DESTINATION ${shared} COMPONENT window
          PATTERN help.ini EXCLUDE)
  install(FILES ${CMAKE_BINARY_DIR}/installed/help.ini DESTINATION ${shared} COMPONENT window)
  install(FILES ${resources}/desktop/velkor.desktop
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT window)
  install(FILES ${resources}/desktop/velkor.xml
          DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT window)
  install(FILES ${resources}/desktop/velkor.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT window)
endif()
