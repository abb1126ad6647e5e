# Installs the build into a folder of its own and builds and runs a host against what stands there.
# cmake -DBUILD=... -DSOURCE=... -DCOMPILER=... -P check.cmake
set(place ${BUILD}/package)
file(REMOVE_RECURSE ${place})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(JOIN " " command ${ARGN})
    message(FATAL_ERROR "${command}: ${result}\n${output}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${place}/prefix)
run(${CMAKE_COMMAND} -S ${SOURCE}/tests/package -B ${place}/build -G Ninja
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${place}/prefix
  -DHOST_SOURCE=${SOURCE}/examples/hello/hello.cpp -DCOMMONGROUND_HEADERS=${place}/prefix/include/commonground)
run(${CMAKE_COMMAND} --build ${place}/build)
run(${place}/build/host)
