# Boost.Thread for Windows as a DLL, from the distribution's own source package. One copy of it serves the application
# and zorvel.dll: a thread that the application interrupts must be the thread that the DLL's sleeps see.
set(source ${ZORVEL_DEPS_DIR}/boost_thread/src)
if(NOT EXISTS ${source}/win32/thread.cpp)
  message(FATAL_ERROR "Boost.Thread's sources are not in ${source}: run scripts/setup windows")
endif()

add_library(boost_thread SHARED
  ${source}/future.cpp
  ${source}/tss_null.cpp
  ${source}/win32/thread.cpp
  ${source}/win32/thread_primitives.cpp
  ${source}/win32/tss_dll.cpp
  ${source}/win32/tss_pe.cpp)
add_library(Boost::thread ALIAS boost_thread)
target_include_directories(boost_thread SYSTEM PUBLIC $<BUILD_INTERFACE:${ZORVEL_DEPS_DIR}/include>)
target_compile_definitions(boost_thread
  PUBLIC BOOST_ALL_NO_LIB BOOST_THREAD_WIN32
  PRIVATE BOOST_THREAD_BUILD_DLL
  INTERFACE BOOST_THREAD_USE_DLL)
target_compile_options(boost_thread PRIVATE -w)
set_target_properties(boost_thread PROPERTIES PREFIX "" OUTPUT_NAME boost_thread)
