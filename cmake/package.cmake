# What goes with every copy of the programs, and packages for Debian, velkor-cli and velkor, made with
# cpack from a build that bundles. What no licence covers yet says so: packaging/copyright keeps the
# place for it.
set(documents ${CMAKE_INSTALL_DATADIR}/doc)
set(folder ${CMAKE_BINARY_DIR}/packaging)
find_program(GZIP gzip REQUIRED)

# velkor_compress(FILE NAME): as $folder/NAME.gz.
function(velkor_compress file name)
  execute_process(COMMAND ${GZIP} --no-name --best --stdout ${file} OUTPUT_FILE ${folder}/${name}.gz)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
endfunction()

file(MAKE_DIRECTORY ${folder})
velkor_compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${documents}/velkor-cli COMPONENT cli
        FILES_MATCHING PATTERN "*.md" PATTERN architecture.md EXCLUDE)
foreach(example firmware gcc cmake)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/${example} COMPONENT cli
          DESTINATION ${documents}/velkor-cli/examples PATTERN build EXCLUDE)
endforeach()
# The words of those whose libraries are linked in.
set(linked libcli11-dev libfmt-dev rapidjson-dev libtomlplusplus-dev libcapstone-dev libstdc++6)
if(VELKOR_STATIC)
  list(APPEND linked libc6)
endif()
foreach(library ${linked})
  if(EXISTS /usr/share/doc/${library}/copyright)
    install(FILES /usr/share/doc/${library}/copyright RENAME ${library}
            DESTINATION ${documents}/velkor-cli/third-party COMPONENT cli)
  endif()
endforeach()
set(components cli)
set(packageOf_cli velkor-cli)
set(packageOf_window velkor)
if(VELKOR_WINDOW)
  list(APPEND components window)
endif()
foreach(component ${components})
  install(FILES ${folder}/changelog.gz ${PROJECT_SOURCE_DIR}/packaging/copyright
          DESTINATION ${documents}/${packageOf_${component}} COMPONENT ${component})
endforeach()

if(NOT VELKOR_BUNDLE OR VELKOR_STATIC)
  return()
endif()

set(VELKOR_MAINTAINER "velkor developers <velkor@users.invalid>" CACHE STRING
    "Whom the packages name as their maintainer")
set(VELKOR_PACKAGE_VERSION ${PROJECT_VERSION}-1)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date --utc --rfc-email
                        --date ${VELKOR_RELEASE_DATE}
                OUTPUT_VARIABLE VELKOR_PACKAGE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE)
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${folder}/changelog.Debian @ONLY)
velkor_compress(${folder}/changelog.Debian changelog.Debian)
foreach(component ${components})
  install(FILES ${folder}/changelog.Debian.gz
          DESTINATION ${documents}/${packageOf_${component}} COMPONENT ${component})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/${packageOf_${component}}.lintian-overrides
          DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${packageOf_${component}}
          COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velkor)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VELKOR_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(what "A microcontroller gives each task a stack of a few hundred bytes. velkor
reads what the compiler left beside the objects and tells how much stack
each function can use at most, along which calls, without running the
program.")
set(CPACK_DEBIAN_CLI_PACKAGE_NAME velkor-cli)
set(CPACK_DEBIAN_CLI_DESCRIPTION "stack analysis of firmware, for terminals and build servers
${what}
.
This package holds the command line program, which also holds the stacks
of a program against their sizes.")
set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME velkor)
set(CPACK_DEBIAN_WINDOW_DESCRIPTION "stack analysis of firmware, in a window
${what}
.
This package holds the window.")
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "velkor-cli (= ${VELKOR_PACKAGE_VERSION})")
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS qt6-translations-l10n)
include(CPack)
