# What a Windows installation holds besides zorvel: applications must use the Boost.Thread and the C++ runtime that the DLL
# uses, and the headers of that Boost.
install(TARGETS boost_thread EXPORT zorvelTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# The distribution's DLLs hold some 20 MB for debuggers.
set(stripped)
foreach(file ${ZORVEL_WINDOWS_RUNTIME})
  get_filename_component(name ${file} NAME)
  set(copy ${PROJECT_BINARY_DIR}/runtime/${name})
  add_custom_command(OUTPUT ${copy} COMMAND ${CMAKE_STRIP} -o ${copy} ${file} DEPENDS ${file} VERBATIM)
  list(APPEND stripped ${copy})
endforeach()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/runtime)
install(FILES ${stripped} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)

# Of Boost's headers those that zorvel's need, and what Boost.Thread and the dates and times offer: a tenth of all.
file(STRINGS ${ZORVEL_DEPS_DIR}/include/boost/version.hpp ZORVEL_BOOST_VERSION REGEX "define BOOST_LIB_VERSION ")
string(REGEX REPLACE "^.*\"(.*)\".*$" "\\1" ZORVEL_BOOST_VERSION "${ZORVEL_BOOST_VERSION}")
set(ZORVEL_BOOST_FOLDER boost-${ZORVEL_BOOST_VERSION})
string(REPLACE "_" "." ZORVEL_BOOST_NUMBER ${ZORVEL_BOOST_VERSION})
set(headers ${PROJECT_BINARY_DIR}/${ZORVEL_BOOST_FOLDER})
set(collect ${CMAKE_CURRENT_LIST_DIR}/collect_boost_headers)
add_custom_command(OUTPUT ${headers}.stamp
  COMMAND ${collect} ${ZORVEL_DEPS_DIR}/include ${PROJECT_SOURCE_DIR}/include ${headers} ${CMAKE_CXX_COMPILER}
  COMMAND ${CMAKE_COMMAND} -E touch ${headers}.stamp
  DEPENDS ${collect} ${ZORVEL_DEPS_DIR}/include/boost/version.hpp
  VERBATIM)
install(DIRECTORY ${headers}/boost DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${ZORVEL_BOOST_FOLDER} COMPONENT development)

# For builds of the library alone: everything that an installation copies.
add_custom_target(zorvel_installed ALL DEPENDS ${stripped} ${headers}.stamp)
add_dependencies(zorvel_installed zorvel boost_thread)

# What may be passed on only with its licence.
set(licenses
  ${CMAKE_CURRENT_LIST_DIR}/licenses/Boost.txt=Boost.txt
  /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright=libstdc++-and-libgcc.txt
  /usr/share/common-licenses/GPL-3=GPL-3.txt
  /usr/share/doc/mingw-w64-x86-64-dev/copyright=libwinpthread.txt)
foreach(license ${licenses})
  string(REPLACE "=" ";" parts ${license})
  list(GET parts 0 from)
  list(GET parts 1 name)
  install(FILES ${from} DESTINATION ${CMAKE_INSTALL_DOCDIR}/licenses RENAME ${name} COMPONENT documentation)
endforeach()

set(ZORVEL_PC_LIBS "-lboost_thread")
set(ZORVEL_PC_CFLAGS
  "-isystem\${includedir}/${ZORVEL_BOOST_FOLDER} -DBOOST_ALL_NO_LIB -DBOOST_THREAD_WIN32 -DBOOST_THREAD_USE_DLL")
