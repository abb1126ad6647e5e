# Installs the build into a separate folder, moves it, and builds and runs a host with the installed files.
# cmake -DBUILD=... -DSOURCE=... -DCOMPILER=... -DVERSION=... -P check.cmake
set(place ${BUILD}/package)
file(REMOVE_RECURSE ${place})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(JOIN " " command ${ARGN})
    message(FATAL_ERROR "${command}: ${result}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${place}/first)
file(RENAME ${place}/first ${place}/prefix)
# The installed tool finds the library relative to its own folder, not that of the build.
run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${place}/prefix/bin/wirelens new CCmdServerEcho)
run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ldd ${place}/prefix/bin/wirelens)
if(NOT output MATCHES "=> ${place}/prefix/[^\n]*/libcommonground\\.so\\.([0-9.]+)")
  message(FATAL_ERROR "wirelens does not take the library that is installed with it:\n${output}")
endif()
# Programs that were linked with one version ask for no other that is incompatible with it.
set(soversion ${CMAKE_MATCH_1})
string(REGEX REPLACE "^(0\\.[0-9]+|[0-9]+).*" "\\1" compatible ${VERSION})
if(NOT soversion STREQUAL compatible)
  message(FATAL_ERROR "version ${VERSION} asks for libcommonground.so.${soversion}")
endif()
run(${CMAKE_COMMAND} -S ${SOURCE}/tests/package -B ${place}/build -G Ninja
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${place}/prefix
  -DHOST_SOURCE=${SOURCE}/examples/hello/hello.cpp
  -DQUESTIONS_SOURCE=${SOURCE}/examples/questions/questions.cpp -DCORES_SOURCE=${SOURCE}/examples/cores/cores.cpp
  -DCOMMONGROUND_HEADERS=${place}/prefix/include/commonground)
run(${CMAKE_COMMAND} --build ${place}/build)
run(${place}/build/host)
run(${place}/build/cores)
if(NOT output STREQUAL "8 peers, 8 notices\n")
  message(FATAL_ERROR "The example cores prints:\n${output}")
endif()
run(${place}/build/questions)
if(NOT output MATCHES "asked 3, answered 3\nasked 0: timed out\nasked 99: the connection ended\n")
  message(FATAL_ERROR "The example questions prints:\n${output}")
endif()
