# GoogleTest: the distribution's library, for Windows built from its sources.
if(WIN32)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  add_library(zorvel_gtest ALIAS gmock)
else()
  find_package(GTest REQUIRED)
  add_library(zorvel_gtest ALIAS GTest::gmock)
endif()

# zorvel_run_test(NAME name TARGET target LABEL label TIMEOUT seconds [CODEPAGE codepage] [ENVIRONMENT NAME=value...])
# One run of a test binary. Its cases are counted from the report that it leaves in test-results/.
function(zorvel_run_test)
  cmake_parse_arguments(arg "" "NAME;TARGET;LABEL;TIMEOUT;CODEPAGE" "ENVIRONMENT" ${ARGN})
  set(report ${CMAKE_BINARY_DIR}/test-results/${arg_NAME}.xml)
  if(WIN32)
    # Wine shows the host's files on drive Z.
    set(report Z:${report})
    set(launcher ${PROJECT_SOURCE_DIR}/scripts/run-under-wine ${arg_CODEPAGE})
  endif()
  add_test(NAME ${arg_NAME} COMMAND ${launcher} $<TARGET_FILE:${arg_TARGET}>)
  set_tests_properties(${arg_NAME} PROPERTIES
    LABELS ${arg_LABEL}
    TIMEOUT ${arg_TIMEOUT}
    # The longest first: one that began last would keep everybody waiting.
    COST ${arg_TIMEOUT}
    ENVIRONMENT "GTEST_OUTPUT=xml:${report};${arg_ENVIRONMENT}")
endfunction()

# zorvel_test_options(target): how code of tests is compiled. Without optimisation, with line numbers alone and with the
# prelude that takes a third of the time; the library under test has the preset's own options.
function(zorvel_test_options target)
  target_compile_options(${target} PRIVATE ${ZORVEL_WARNINGS} -O0 -g1)
  if(NOT target STREQUAL zorvel_test_prelude)
    target_precompile_headers(${target} REUSE_FROM zorvel_test_prelude)
  endif()
endfunction()

# Every binary belongs to a target of its label, so that a run of one label builds no other.
foreach(label unit fault multiprocess interop slow)
  add_custom_target(zorvel_${label}_tests)
endforeach()

# zorvel_test_executable(NAME name LABEL label SOURCES source...)
function(zorvel_test_executable)
  cmake_parse_arguments(arg "" "NAME;LABEL" "SOURCES" ${ARGN})
  add_executable(${arg_NAME} ${arg_SOURCES})
  add_dependencies(zorvel_${arg_LABEL}_tests ${arg_NAME})
  zorvel_test_options(${arg_NAME})
  target_include_directories(${arg_NAME} PRIVATE ${PROJECT_SOURCE_DIR})
  # The support library brings main(); sources of a test may replace the clock because they are linked before the core.
  target_link_libraries(${arg_NAME} PRIVATE zorvel_test_support zorvel_core zorvel_gtest)
endfunction()

# zorvel_test(NAME name [LABEL unit|fault|multiprocess|interop|slow] [TIMEOUT seconds] SOURCES source...)
# One test binary on the static core, run as one test (under Wine once for each code page).
function(zorvel_test)
  cmake_parse_arguments(arg "" "NAME;LABEL;TIMEOUT" "SOURCES" ${ARGN})
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  zorvel_test_executable(NAME ${arg_NAME} LABEL ${arg_LABEL} SOURCES ${arg_SOURCES})
  set(run TARGET ${arg_NAME} LABEL ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
  if(WIN32)
    foreach(codepage 1252 932)
      zorvel_run_test(NAME ${arg_NAME}.${codepage} CODEPAGE ${codepage} ${run})
    endforeach()
  else()
    zorvel_run_test(NAME ${arg_NAME} ${run})
  endif()
endfunction()
