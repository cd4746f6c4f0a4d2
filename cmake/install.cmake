# What an installation holds. Components: runtime (what programs need to run), development (what it takes to build them),
# documentation.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zorvel)

install(TARGETS zorvel EXPORT zorvelTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zorvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(FILES
    ${PROJECT_SOURCE_DIR}/debuggers/zorvel_gdb.py
    ${PROJECT_SOURCE_DIR}/debuggers/zorvel.natvis
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel COMPONENT development)
install(FILES
    ${PROJECT_SOURCE_DIR}/LICENSE
    ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    ${PROJECT_SOURCE_DIR}/docs/locking.md
    ${PROJECT_SOURCE_DIR}/docs/filesystems.md
    ${PROJECT_SOURCE_DIR}/docs/versioning.md
    ${PROJECT_SOURCE_DIR}/docs/debugging.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/install_windows.cmake)
else()
  set(ZORVEL_PC_LIBS "-lboost_thread -pthread")
  set(ZORVEL_PC_CFLAGS "-pthread")
endif()

install(EXPORT zorvelTargets NAMESPACE zorvel:: DESTINATION ${package_folder} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zorvelConfig.cmake.in ${PROJECT_BINARY_DIR}/zorvelConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorvelConfigVersion.cmake COMPATIBILITY ${ZORVEL_COMPATIBILITY})
install(FILES ${PROJECT_BINARY_DIR}/zorvelConfig.cmake ${PROJECT_BINARY_DIR}/zorvelConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# The file finds the installation from where it lies itself, so that the installation can be moved.
file(RELATIVE_PATH ZORVEL_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" ZORVEL_PC_PREFIX ${ZORVEL_PC_PREFIX})
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorvel.pc.in ${PROJECT_BINARY_DIR}/zorvel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorvel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
