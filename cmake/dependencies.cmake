# zorvel_boost_thread: Boost's headers, Boost.Thread as a shared library, and threads.
find_package(Threads REQUIRED)
add_library(zorvel_boost_thread INTERFACE)

if(WIN32)
  # scripts/setup lays these out below ZORVEL_DEPS_DIR: include/boost (the distribution's headers and nothing else) and
  # boost_thread/src (the distribution's source package).
  set(ZORVEL_DEPS_DIR ${PROJECT_SOURCE_DIR}/build/deps CACHE PATH "Where scripts/setup put the Windows dependencies")
  include(${CMAKE_CURRENT_LIST_DIR}/boost_thread_windows.cmake)
  include(${CMAKE_CURRENT_LIST_DIR}/windows_runtime.cmake)
  target_link_libraries(zorvel_boost_thread INTERFACE Boost::thread)
  set(ZORVEL_INSTALLED_BOOST_THREAD zorvel::boost_thread)
  set(ZORVEL_SYSTEM_LIBRARIES shlwapi psapi)
else()
  find_package(Boost 1.81 REQUIRED COMPONENTS thread)
  target_link_libraries(zorvel_boost_thread INTERFACE Boost::thread Threads::Threads)
  set(ZORVEL_INSTALLED_BOOST_THREAD Boost::thread Threads::Threads)
  set(ZORVEL_SYSTEM_LIBRARIES "")
endif()
