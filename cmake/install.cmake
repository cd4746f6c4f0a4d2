# What an installation holds: the library, its headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zorvel)

install(TARGETS zorvel EXPORT zorvelTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zorvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

if(WIN32)
  # Applications must use the Boost.Thread and the C++ runtime that the DLL uses, so these come with it.
  install(TARGETS boost_thread EXPORT zorvelTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${ZORVEL_WINDOWS_RUNTIME} DESTINATION ${CMAKE_INSTALL_BINDIR})
  set(ZORVEL_PC_LIBS "-lboost_thread")
  set(ZORVEL_PC_CFLAGS "-DBOOST_ALL_NO_LIB -DBOOST_THREAD_WIN32 -DBOOST_THREAD_USE_DLL")
else()
  set(ZORVEL_PC_LIBS "-lboost_thread -pthread")
  set(ZORVEL_PC_CFLAGS "-pthread")
endif()

install(EXPORT zorvelTargets NAMESPACE zorvel:: DESTINATION ${package_folder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zorvelConfig.cmake.in ${PROJECT_BINARY_DIR}/zorvelConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zorvelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zorvelConfig.cmake ${PROJECT_BINARY_DIR}/zorvelConfigVersion.cmake
  DESTINATION ${package_folder})

# The file finds the installation from where it lies itself, so that the installation can be moved.
file(RELATIVE_PATH ZORVEL_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" ZORVEL_PC_PREFIX ${ZORVEL_PC_PREFIX})
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorvel.pc.in ${PROJECT_BINARY_DIR}/zorvel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorvel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
