# CPack: three Debian packages, one of the programs on PROJ and GDAL and one of the extension of PostgreSQL, or a zip for Windows.
set(CPACK_PACKAGE_VENDOR "LATIGO developers")
set(CPACK_PACKAGE_CONTACT "LATIGO developers <maintainers@latigo.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "geodesy for survey and mapping programs")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(LATIGO_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()

if(TARGET latigo-system OR TARGET latigo-grid)
  list(APPEND CPACK_COMPONENTS_ALL import)
endif()
if(TARGET latigo_postgresql)
  list(APPEND CPACK_COMPONENTS_ALL postgresql)
endif()

if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME liblatigo${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The library converts positions between geographic, grid and earth-centred
coordinates, with twelve projections, datum shifts and geoids.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liblatigo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liblatigo${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-1)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers for C and C++, the static library, files for CMake and
pkg-config, documents and examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME latigo-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "liblatigo${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "The program latigo converts files of points between the coordinate
systems that a configuration file describes.")

set(CPACK_DEBIAN_IMPORT_PACKAGE_NAME latigo-import)
set(CPACK_DEBIAN_IMPORT_PACKAGE_SECTION science)
set(CPACK_DEBIAN_IMPORT_PACKAGE_DEPENDS "liblatigo${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_IMPORT_PACKAGE_RECOMMENDS "latigo-tools, proj-data")
set(CPACK_COMPONENT_IMPORT_DESCRIPTION "The program latigo-system describes systems of the EPSG data set as
sections of a configuration file; latigo-grid makes grid files from public
datum and geoid grids.")

set(CPACK_DEBIAN_POSTGRESQL_PACKAGE_NAME postgresql-15-latigo)
set(CPACK_DEBIAN_POSTGRESQL_PACKAGE_SECTION database)
set(CPACK_DEBIAN_POSTGRESQL_PACKAGE_DEPENDS postgresql-15)
set(CPACK_DEBIAN_POSTGRESQL_PACKAGE_SUGGESTS postgresql-15-postgis-3)
set(CPACK_COMPONENT_POSTGRESQL_DESCRIPTION "The extension converts points between the coordinate systems of configuration
files inside PostgreSQL 15, and points of PostGIS.")

# The packages' changelog begins with their version.
file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/debian/changelog first_line LIMIT_COUNT 1)
if(NOT first_line MATCHES "^latigo \\(${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}\\)")
  message(FATAL_ERROR "cmake/debian/changelog does not begin with version ${PROJECT_VERSION}")
endif()

include(CPack)
