# Configures a host's project that has the library as a folder of its own tree: only the library is built with it, and
# nothing of it is installed. Compiles the examples there.
# cmake -DBUILD=... -DSOURCE=... -DCOMPILER=... -DEXAMPLES=a,b -P check.cmake
set(place ${BUILD}/subproject)
file(REMOVE_RECURSE ${place})

execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE}/tests/subproject -B ${place} -G Ninja
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCOMMONGROUND=${SOURCE} -DEXAMPLES=${EXAMPLES}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${output}")
endif()
set(expected "targets: commonground_dependencies;commonground_warnings;commonground;zet_ConsoleLog;zet_FileLog;zet_Secure; tests: .")
string(FIND "${output}" "${expected}" at)
if(at EQUAL -1)
  message(FATAL_ERROR "not '${expected}':\n${output}")
endif()
if(EXISTS ${place}/commonground/cmake_install.cmake)
  file(READ ${place}/commonground/cmake_install.cmake script)
  if(script MATCHES "file\\(INSTALL")
    message(FATAL_ERROR "The library is installed with the host:\n${script}")
  endif()
endif()
string(REGEX REPLACE "([a-z]+)" "example_\\1" targets "${EXAMPLES}")
string(REPLACE "," ";" targets "${targets}")
execute_process(COMMAND ${CMAKE_COMMAND} --build ${place} --target ${targets}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${output}")
endif()
