# Installation by `cmake --install`, and its removal. The components are those of the packages: library, development, tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Latigo)

install(TARGETS latigo EXPORT LatigoTargets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  FILE_SET HEADERS COMPONENT development)
if(TARGET latigo_static)
  install(TARGETS latigo_static EXPORT LatigoTargets ARCHIVE COMPONENT development)
endif()
if(WIN32)
  install(FILES ${PROJECT_BINARY_DIR}/latigo.lib ${PROJECT_BINARY_DIR}/src/latigo.def DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT development)
endif()
install(EXPORT LatigoTargets NAMESPACE Latigo:: DESTINATION ${config_dir} COMPONENT development)

write_basic_package_version_file(LatigoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
file(CONFIGURE OUTPUT LatigoConfig.cmake CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/LatigoTargets.cmake)\n" @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/LatigoConfig.cmake ${PROJECT_BINARY_DIR}/LatigoConfigVersion.cmake
  DESTINATION ${config_dir} COMPONENT development)

# Paths are relative to the file, so that the tree can be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/latigo.pc.in latigo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/latigo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

foreach(page latigo.1 latigo-grid.1 latigo-system.1 liblatigo.3)
  configure_file(docs/man/${page} ${PROJECT_BINARY_DIR}/man/${page} @ONLY)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/man/liblatigo.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)

install(FILES README.md CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
  PATTERN CMakeLists.txt EXCLUDE PATTERN Doxyfile EXCLUDE PATTERN man EXCLUDE)

if(LATIGO_BUILD_TOOLS)
  install(TARGETS latigo-cli RUNTIME COMPONENT tools)
  install(FILES ${PROJECT_BINARY_DIR}/man/latigo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  # Where the program looks for them. The documents have copies.
  install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/latigo COMPONENT tools
    FILES_MATCHING PATTERN *.ini PATTERN *.pts)
  install(FILES tools/latigo/latigo.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
    RENAME latigo COMPONENT tools)
endif()

foreach(program latigo-system latigo-grid)
  if(TARGET ${program})
    file(RELATIVE_PATH bin_to_lib /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH $ORIGIN/${bin_to_lib})
    install(TARGETS ${program} RUNTIME COMPONENT import)
    install(FILES ${PROJECT_BINARY_DIR}/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT import)
    install(FILES tools/${program}/${program}.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
      RENAME ${program} COMPONENT import)
  endif()
endforeach()

# The prefix is known at installation; the target removes the files listed in the manifest.
foreach(component library development tools import)
  install(CODE "file(WRITE \"${PROJECT_BINARY_DIR}/install_prefix\" \"\${CMAKE_INSTALL_PREFIX}\")" COMPONENT ${component})
endforeach()
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake)

include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)
