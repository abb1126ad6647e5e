# One runner for all C++ tests.
if(CMAKE_CROSSCOMPILING AND WIN32)
  # No package contains GoogleTest built for Windows, but one contains its sources.
  find_path(GOOGLETEST_SOURCE CMakeLists.txt PATHS /usr/src/googletest NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  mark_as_advanced(GOOGLETEST_SOURCE)
  if(NOT GOOGLETEST_SOURCE)
    message(FATAL_ERROR "No sources of GoogleTest: install the package googletest")
  endif()
  set(INSTALL_GTEST OFF CACHE BOOL "")
  mark_as_advanced(INSTALL_GTEST)
  add_subdirectory(${GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()

file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/*_test.cpp)
file(GLOB_RECURSE support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.cpp)
list(FILTER sources EXCLUDE REGEX "/tests/compile_fail/")
list(APPEND sources ${support})
list(REMOVE_DUPLICATES sources)
list(LENGTH sources all)
commonground_keep_own_platform(sources)
list(LENGTH sources kept)
math(EXPR other "${all} - ${kept}")
if(other GREATER 0)
  message(STATUS "Left out of the tests: ${other} files for another platform")
endif()
if(COMMONGROUND_TEST_FILES)
  list(FILTER sources INCLUDE REGEX "${COMMONGROUND_TEST_FILES}")
endif()
if(COMMONGROUND_TLS)
  list(FILTER sources EXCLUDE REGEX "/without_tls_test\\.cpp$")
else()
  list(FILTER sources EXCLUDE REGEX "/tls_[a-z0-9_]+\\.cpp$")
endif()
if(NOT COMMONGROUND_UDP)
  list(FILTER sources EXCLUDE REGEX "/quic_[a-z_]+\\.cpp$")
endif()
if(sources)
  add_executable(commonground_tests ${sources})
  target_link_libraries(commonground_tests PRIVATE
    commonground commonground_tools commonground_warnings GTest::gtest_main GTest::gmock Threads::Threads
    $<$<PLATFORM_ID:Windows>:ws2_32>)
  if(COMMONGROUND_TLS)
    # The tests generate certificates at run time.
    target_link_libraries(commonground_tests PRIVATE PkgConfig::gnutls)
  endif()
  if(COMMONGROUND_UDP)
    # A test peer that uses ngtcp2 directly.
    target_link_libraries(commonground_tests PRIVATE PkgConfig::ngtcp2)
  endif()
  if(CMAKE_CROSSCOMPILING AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # False alarms of this compiler, for Windows and for ARM: it takes copies of long texts for those of short ones.
    target_compile_options(commonground_tests PRIVATE
      -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
  endif()
  # The paths of test data and of the programs that tests start. Only one file depends on them.
  set(starter "")
  if(CMAKE_CROSSCOMPILING AND NOT WIN32)
    # Under Wine a test can start a program of the target; under QEMU it needs the emulator's command.
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " starter)
    string(APPEND starter " ")
  endif()
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/tests/support/places.cpp APPEND PROPERTY COMPILE_DEFINITIONS
    COMMONGROUND_TESTS_DIR="${COMMONGROUND_DRIVE}${PROJECT_SOURCE_DIR}/tests"
    COMMONGROUND_BUILD_DIR="${COMMONGROUND_DRIVE}${PROJECT_BINARY_DIR}"
    COMMONGROUND_STARTER="${starter}")
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/tests/host/recording_posix_test.cpp APPEND PROPERTY COMPILE_DEFINITIONS
    COMMONGROUND_OTHER_PROGRAMS=$<BOOL:${COMMONGROUND_OTHER_PROGRAMS}>)
  target_precompile_headers(commonground_tests PRIVATE <cmake/std_pch.h> <gtest/gtest.h>)
  # It defines calls of the C library anew, which the checked copies of their headers would do, too.
  set_source_files_properties(${PROJECT_SOURCE_DIR}/tests/support/system_calls.cpp PROPERTIES
    SKIP_PRECOMPILE_HEADERS ON COMPILE_OPTIONS -U_FORTIFY_SOURCE)
  if(NOT WIN32)
    # A service that tests start and send signals to.
    add_executable(tested_service ${PROJECT_SOURCE_DIR}/tests/service/tested_service.cpp)
    target_link_libraries(tested_service PRIVATE commonground commonground_warnings)
  endif()
  foreach(needed wirelens arena tested_service zet_ConsoleLog zet_FileLog)
    if(TARGET ${needed})
      add_dependencies(commonground_tests ${needed})
    endif()
  endforeach()
  if(CMAKE_CROSSCOMPILING AND NOT WIN32)
    # Under QEMU a start takes longer than most tests. Not run there: the mutations of all golden vectors, which take
    # too long, and the demo and the run, which start programs themselves; the Interop tests cover the same as the demo
    # with the same programs.
    set(COMMONGROUND_TESTS_BY_SUITE ON)
    # The last ones start this program again, or fork while other threads run, which QEMU does not support.
    string(JOIN ":" COMMONGROUND_TESTS_LEFT_OUT Mutation.* Arena.DemoPlaysAllStepsAndLeavesWithZero
      Arena.RunEndsWithACleanAudit Arena.PlayersComeBackWhenAServerIsKilled
      Bugs.ProcessOutlivesTheReaderOfItsConsoleLog Bugs.ALineOnAConsoleWithoutReaderRaisesNoSignal
      Bugs.AnIdAboveTheTableIsNotInstalled* LogMailbox.ForkedProcessWritesWithAThreadOfItsOwn
      Bugs.AForkedProcessResolvesNames)
  endif()
  set(runner ${PROJECT_BINARY_DIR}/commonground_tests${CMAKE_EXECUTABLE_SUFFIX})
  set(directory ${PROJECT_BINARY_DIR})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/DiscoverTests.cmake.in ${PROJECT_BINARY_DIR}/DiscoverTests.cmake @ONLY)
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${PROJECT_BINARY_DIR}/DiscoverTests.cmake)
endif()

# Commands over networks that drop, delay and reorder packets, between two network namespaces; the short form is a test.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND COMMONGROUND_TLS AND NOT CMAKE_CROSSCOMPILING)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/impaired/*.cpp)
  add_executable(impaired_networks ${sources}
    ${PROJECT_SOURCE_DIR}/tests/support/tls_certificates.cpp ${PROJECT_SOURCE_DIR}/tests/support/udp_loopback.cpp)
  target_link_libraries(impaired_networks PRIVATE commonground commonground_warnings PkgConfig::gnutls)
  add_test(NAME Impaired.CommandsArriveOnceAndInOrder COMMAND ${PROJECT_SOURCE_DIR}/scripts/impaired --short)
  set_tests_properties(Impaired.CommandsArriveOnceAndInOrder PROPERTIES
    ENVIRONMENT IMPAIRED_BUILD=${PROJECT_BINARY_DIR} SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()

# A peer that vanishes: processes in two network namespaces, between which the line is cut.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CROSSCOMPILING)
  add_executable(vanished_peers ${PROJECT_SOURCE_DIR}/tests/vanished/main.cpp)
  target_link_libraries(vanished_peers PRIVATE commonground commonground_warnings)
  add_test(NAME Vanished.PeersEndWithinTheirTime COMMAND ${PROJECT_SOURCE_DIR}/scripts/vanished)
  set_tests_properties(Vanished.PeersEndWithinTheirTime PROPERTIES
    ENVIRONMENT VANISHED_BUILD=${PROJECT_BINARY_DIR} SKIP_RETURN_CODE 77 TIMEOUT 120)
endif()
