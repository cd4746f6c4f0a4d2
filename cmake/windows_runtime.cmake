# The compiler's runtime is shared, because exceptions and std::string cross the DLL's edge. Its DLLs lie next to the
# programs that use them, where Windows looks first.
set(ZORVEL_WINDOWS_RUNTIME "")
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(
    COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
    OUTPUT_VARIABLE file
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "The compiler does not know where its ${name} is")
  endif()
  file(COPY ${file} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  list(APPEND ZORVEL_WINDOWS_RUNTIME ${file})
endforeach()
