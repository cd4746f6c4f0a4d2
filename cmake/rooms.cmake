# Every room adds its sources to one list, compiled once into objects that both the shared library and the static
# core (for tests) are made of.
add_library(zorvel_objects OBJECT)
target_compile_definitions(zorvel_objects PRIVATE ZORVEL_BUILDING)
target_compile_options(zorvel_objects PRIVATE ${ZORVEL_WARNINGS})
target_include_directories(zorvel_objects PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(zorvel_objects PUBLIC zorvel_boost_thread)
set_target_properties(zorvel_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)

# zorvel_room(source...): the sources of the room in the current folder.
function(zorvel_room)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(zorvel_objects PRIVATE ${ARGN})
endfunction()
