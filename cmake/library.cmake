# The shared library: what users link.
add_library(zorvel SHARED $<TARGET_OBJECTS:zorvel_objects>)
add_library(zorvel::zorvel ALIAS zorvel)
target_include_directories(zorvel PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(zorvel
  PUBLIC
    $<BUILD_INTERFACE:zorvel_boost_thread>
    $<INSTALL_INTERFACE:${ZORVEL_INSTALLED_BOOST_THREAD}>
  PRIVATE ${ZORVEL_SYSTEM_LIBRARIES})
target_compile_features(zorvel PUBLIC cxx_std_17)
set_target_properties(zorvel PROPERTIES LINKER_LANGUAGE CXX)
if(WIN32)
  # The product's file is zorvel.dll, without MinGW's "lib".
  set_target_properties(zorvel PROPERTIES PREFIX "")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
  target_sources(zorvel PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
else()
  set_target_properties(zorvel PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${ZORVEL_SOVERSION})
endif()

# The same objects as a static library, for tests: they see what the shared library hides, and can put their own clock
# and timer ahead of it.
add_library(zorvel_core STATIC $<TARGET_OBJECTS:zorvel_objects>)
target_compile_definitions(zorvel_core INTERFACE ZORVEL_STATIC)
target_include_directories(zorvel_core INTERFACE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
target_link_libraries(zorvel_core INTERFACE zorvel_boost_thread ${ZORVEL_SYSTEM_LIBRARIES})
target_compile_features(zorvel_core PUBLIC cxx_std_17)
set_target_properties(zorvel_core PROPERTIES LINKER_LANGUAGE CXX)
