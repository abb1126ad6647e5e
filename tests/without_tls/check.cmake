# Configures the library without TLS, with a pkg-config that finds Nettle but not GnuTLS, and compiles what uses Nettle;
# then with TLS and without connections over UDP, and compiles what stands for them.
# cmake -DBUILD=... -DSOURCE=... -DCOMPILER=... -P check.cmake
set(place ${BUILD}/without_tls)
file(REMOVE_RECURSE ${place})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(JOIN " " command ${ARGN})
    message(FATAL_ERROR "${command}: ${result}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(pkg-config --variable=pcfiledir nettle)
string(STRIP "${output}" known)
file(COPY ${known}/nettle.pc DESTINATION ${place}/known)
run(${CMAKE_COMMAND} -E env --unset=PKG_CONFIG_PATH PKG_CONFIG_LIBDIR=${place}/known
  ${CMAKE_COMMAND} -S ${SOURCE} -B ${place} -G Ninja -DCMAKE_CXX_COMPILER=${COMPILER} -DCOMMONGROUND_TLS=OFF
  -DCOMMONGROUND_TESTS=OFF -DCOMMONGROUND_BENCH=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON)
file(READ ${place}/build.ninja rules)
if(rules MATCHES "[^\n]*gnutls[^\n]*")
  message(FATAL_ERROR "GnuTLS is in the build: ${CMAKE_MATCH_0}")
endif()
run(${CMAKE_COMMAND} --build ${place} --target CMakeFiles/commonground.dir/framework/platform/hash_posix.cpp.o)

set(objects CMakeFiles/zet_Secure.dir/net)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${place}/udp -G Ninja -DCMAKE_CXX_COMPILER=${COMPILER} -DCOMMONGROUND_UDP=OFF
  -DCOMMONGROUND_TESTS=OFF -DCOMMONGROUND_BENCH=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON)
file(READ ${place}/udp/build.ninja rules)
if(rules MATCHES "[^\n]*ngtcp2[^\n]*")
  message(FATAL_ERROR "ngtcp2 is in the build: ${CMAKE_MATCH_0}")
endif()
run(${CMAKE_COMMAND} --build ${place}/udp --target
  ${objects}/quic/inner/udp_router_none.cpp.o ${objects}/inner/secure_module_gnutls.cpp.o)
