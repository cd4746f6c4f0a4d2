# Google Benchmark for Windows, from the distribution's own source package.
set(source ${ZORVEL_DEPS_DIR}/benchmark)
if(NOT EXISTS ${source}/src/benchmark.cc)
  message(FATAL_ERROR "Google Benchmark's sources are not in ${source}: run scripts/setup bench")
endif()

file(GLOB files ${source}/src/*.cc)
list(REMOVE_ITEM files ${source}/src/benchmark_main.cc)
add_library(benchmark STATIC ${files})
add_library(benchmark::benchmark ALIAS benchmark)
target_include_directories(benchmark SYSTEM PUBLIC ${source}/include)
target_compile_definitions(benchmark PUBLIC BENCHMARK_STATIC_DEFINE PRIVATE HAVE_STD_REGEX HAVE_STEADY_CLOCK)
target_compile_options(benchmark PRIVATE -w)
target_link_libraries(benchmark PUBLIC shlwapi Threads::Threads)
