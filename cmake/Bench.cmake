# Each bench/*_bench.cpp is a program with its own main; they share bench/support/.
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/*_bench.cpp)
file(GLOB support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/support/*.cpp)
# Benchmarks that use fork and epoll are built on Linux only.
if(WIN32)
  list(FILTER sources INCLUDE REGEX "/(codec|dispatch|wirelens)_bench\\.cpp$")
  list(FILTER support INCLUDE REGEX "/(records|rounds)\\.cpp$")
endif()
if(COMMONGROUND_TLS AND NOT WIN32)
  # Certificates are generated at run time.
  list(APPEND support ${PROJECT_SOURCE_DIR}/tests/support/tls_certificates.cpp)
endif()
add_library(commonground_bench STATIC ${support})
target_link_libraries(commonground_bench
  PUBLIC commonground commonground_tools PRIVATE commonground_warnings Threads::Threads)
if(COMMONGROUND_TLS AND NOT WIN32)
  target_link_libraries(commonground_bench PRIVATE PkgConfig::gnutls)
  target_compile_definitions(commonground_bench PRIVATE COMMONGROUND_BENCH_TLS)
endif()
foreach(source ${sources})
  get_filename_component(name ${source} NAME_WE)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE commonground_bench commonground_warnings)
endforeach()

# A few connections only: that the processes of the benchmark find each other, and that it ends.
if(COMMONGROUND_TESTS AND TARGET idle_bench AND NOT CMAKE_CROSSCOMPILING)
  add_test(NAME Bench.IdleConnectionsInSeveralProcesses COMMAND idle_bench 300 2)
  set_tests_properties(Bench.IdleConnectionsInSeveralProcesses PROPERTIES TIMEOUT 60
    PASS_REGULAR_EXPRESSION "a tick over 300 idle connections in 2 processes, against none")
endif()

# ENet, a library over UDP without encryption, is compared with where it is installed.
find_package(PkgConfig QUIET)
if(TARGET udp_bench AND PKG_CONFIG_FOUND)
  pkg_check_modules(enet QUIET IMPORTED_TARGET libenet)
  if(enet_FOUND)
    target_link_libraries(udp_bench PRIVATE PkgConfig::enet)
    target_compile_definitions(udp_bench PRIVATE COMMONGROUND_BENCH_ENET)
  endif()
endif()

# The start of a program with the library is compared with the start of one that does nothing.
if(NOT WIN32)
  add_executable(empty_program ${PROJECT_SOURCE_DIR}/bench/support/empty/program.cpp)
  if(TARGET hello AND TARGET start_bench)
    add_dependencies(start_bench hello empty_program)
  endif()
endif()

# Paths whose instructions valgrind counts; a test compares the counts with stored ones.
find_path(VALGRIND_INCLUDE valgrind/callgrind.h)
mark_as_advanced(VALGRIND_INCLUDE)
if(VALGRIND_INCLUDE AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CROSSCOMPILING AND NOT COMMONGROUND_SANITIZE)
  add_executable(instruction_paths ${PROJECT_SOURCE_DIR}/tests/instructions/paths.cpp)
  target_link_libraries(instruction_paths PRIVATE commonground_bench commonground_warnings)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  string(STRIP "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}" flags)
  target_compile_definitions(instruction_paths PRIVATE
    BUILD_OF_PATHS="${CMAKE_SYSTEM_PROCESSOR} ${flags}")
endif()
if(COMMONGROUND_TESTS AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CROSSCOMPILING AND NOT COMMONGROUND_SANITIZE)
  find_package(Python3 COMPONENTS Interpreter REQUIRED)
  add_test(NAME Instructions.NoPathGrows
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/scripts/check_instructions.py ${PROJECT_BINARY_DIR})
  add_test(NAME Instructions.CheckFindsEachFault
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/scripts/check_instructions.py --self-test)
  set_tests_properties(Instructions.NoPathGrows PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()
