# libzorvelN, N being what the ABI counts by (docs/versioning.md), and libzorvel-dev.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL runtime debian_runtime development debian_development)
set(CPACK_COMPONENT_RUNTIME_GROUP library)
set(CPACK_COMPONENT_DEBIAN_RUNTIME_GROUP library)
set(CPACK_COMPONENT_DEVELOPMENT_GROUP dev)
set(CPACK_COMPONENT_DEBIAN_DEVELOPMENT_GROUP dev)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE zorvel)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(package_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

set(runtime_package libzorvel${ZORVEL_SOVERSION})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "This package holds the shared library that programs need to run.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
# Programs built with this version depend on at least this version of the package.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# Boost's types stand in the exported names: no other version of Boost will do.
set(boost ${Boost_VERSION_MAJOR}.${Boost_VERSION_MINOR})
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzorvel-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_DESCRIPTION "This package holds the headers, the CMake package and the pkg-config file
that it takes to build programs with the library.")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "${runtime_package} (= ${package_version}), libboost${boost}-dev, libboost-thread${boost}-dev")

# Debian's documents lie in a folder named like the package.
set(documents ${PROJECT_BINARY_DIR}/debian)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/copyright.in ${documents}/copyright @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${documents}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
foreach(name changelog changelog.Debian)
  execute_process(COMMAND gzip -9nf ${documents}/${name} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
set(common ${documents}/copyright ${documents}/changelog.gz ${documents}/changelog.Debian.gz)
install(FILES ${common}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${runtime_package} COMPONENT debian_runtime EXCLUDE_FROM_ALL)
install(FILES ${common}
    ${PROJECT_SOURCE_DIR}/docs/locking.md
    ${PROJECT_SOURCE_DIR}/docs/filesystems.md
    ${PROJECT_SOURCE_DIR}/docs/versioning.md
    ${PROJECT_SOURCE_DIR}/docs/debugging.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzorvel-dev COMPONENT debian_development EXCLUDE_FROM_ALL)

# Where gdb looks by itself for what belongs to a library: a folder that is named like the library's.
install(FILES ${PROJECT_SOURCE_DIR}/debuggers/zorvel_gdb.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CPACK_PACKAGING_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}
  RENAME libzorvel.so.${PROJECT_VERSION}-gdb.py
  COMPONENT debian_development EXCLUDE_FROM_ALL)
