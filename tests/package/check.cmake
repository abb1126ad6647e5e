# Installs the build into a separate folder, moves it, and builds and runs a host with the installed files.
# cmake -DBUILD=... -DSOURCE=... -DCOMPILER=... -DVERSION=... -DEXAMPLES=a,b -P check.cmake
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
  -DEXAMPLES=${EXAMPLES} -DEXAMPLES_FOLDER=${SOURCE}/examples
  -DCOMMONGROUND_HEADERS=${place}/prefix/include/commonground)
run(${CMAKE_COMMAND} --build ${place}/build)
run(${place}/build/host)
string(REPLACE "," ";" examples "${EXAMPLES}")
foreach(example ${examples})
  if(example STREQUAL "service")
    run(python3 ${SOURCE}/scripts/check_service.py ${place}/build/service)
  else()
    run(${CMAKE_COMMAND} -DPROGRAM=${place}/build/${example} -DEXAMPLE=${SOURCE}/examples/${example}
      -DPLACE=${place}/example_files -P ${SOURCE}/tests/examples/check.cmake)
  endif()
endforeach()

# Without its module, or with a file that is none, the library refuses TLS and says why.
list(FIND examples tls at)
if(NOT at EQUAL -1)
  file(GLOB_RECURSE module ${place}/prefix/zet_Secure-${VERSION}.so)
  foreach(fault "cannot open shared object file" "invalid ELF header|file too short")
    file(REMOVE ${module})
    if(NOT fault MATCHES open)
      file(WRITE ${module} "nothing")
    endif()
    execute_process(COMMAND ${place}/build/tls ${place}/example_files RESULT_VARIABLE result ERROR_VARIABLE output)
    if(result EQUAL 0 OR NOT output MATCHES
        "^No TLS and no connections over UDP: ${module}: (${fault})[^\n]*\nThis library has no TLS\n$")
      message(FATAL_ERROR "tls ends with ${result} and logs:\n${output}\nnot: ${fault}")
    endif()
  endforeach()
endif()
