# One runner for the tests of the code.
if(CMAKE_CROSSCOMPILING AND WIN32)
  # No package has GoogleTest for Windows, but its sources are a package.
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
if(COMMONGROUND_TLS)
  list(FILTER sources EXCLUDE REGEX "/without_tls_test\\.cpp$")
else()
  list(FILTER sources EXCLUDE REGEX "/tls_[a-z_]+\\.cpp$")
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
    # Certificates are made while the tests run.
    target_link_libraries(commonground_tests PRIVATE PkgConfig::gnutls)
  endif()
  if(COMMONGROUND_UDP)
    # A peer of another make.
    target_link_libraries(commonground_tests PRIVATE PkgConfig::ngtcp2)
  endif()
  if(CMAKE_CROSSCOMPILING AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This compiler, for Windows and for ARM, takes copies into and out of longer texts for such of a text's short form.
    target_compile_options(commonground_tests PRIVATE
      -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
  endif()
  # Where a test finds its data, and the programs that it starts. One file knows; the others are the same everywhere.
  set(starter "")
  if(CMAKE_CROSSCOMPILING AND NOT WIN32)
    # Wine starts a program of its own system when a test asks for one; QEMU does not.
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " starter)
    string(APPEND starter " ")
  endif()
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/tests/support/places.cpp APPEND PROPERTY COMPILE_DEFINITIONS
    COMMONGROUND_TESTS_DIR="${COMMONGROUND_DRIVE}${PROJECT_SOURCE_DIR}/tests"
    COMMONGROUND_BUILD_DIR="${COMMONGROUND_DRIVE}${PROJECT_BINARY_DIR}"
    COMMONGROUND_STARTER="${starter}")
  target_precompile_headers(commonground_tests PRIVATE <cmake/std_pch.h> <gtest/gtest.h>)
  # It defines calls of the C library anew, which the checked copies of their headers would do, too.
  set_source_files_properties(${PROJECT_SOURCE_DIR}/tests/support/system_calls.cpp PROPERTIES
    SKIP_PRECOMPILE_HEADERS ON COMPILE_OPTIONS -U_FORTIFY_SOURCE)
  foreach(needed wirelens arena zet_ConsoleLog zet_FileLog)
    if(TARGET ${needed})
      add_dependencies(commonground_tests ${needed})
    endif()
  endforeach()
  if(CMAKE_CROSSCOMPILING AND NOT WIN32)
    # Under QEMU a start costs more than most tests. Left out are the mutations of all golden vectors, which take too
    # long there, and the demo, which starts programs by itself; the Interop tests play the same with the same programs.
    set(COMMONGROUND_TESTS_BY_SUITE ON)
    # The last ones start this program again, or fork while other threads run, which QEMU does not do.
    string(JOIN ":" COMMONGROUND_TESTS_LEFT_OUT Mutation.* Arena.DemoPlaysAllStepsAndLeavesWithZero
      Bugs.ProcessOutlivesTheReaderOfItsConsoleLog Bugs.ALineOnAConsoleWithoutReaderRaisesNoSignal
      Bugs.AnIdAboveTheTableIsNotInstalled* LogMailbox.ForkedProcessWritesWithAThreadOfItsOwn)
  endif()
  set(runner ${PROJECT_BINARY_DIR}/commonground_tests${CMAKE_EXECUTABLE_SUFFIX})
  set(directory ${PROJECT_BINARY_DIR})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/DiscoverTests.cmake.in ${PROJECT_BINARY_DIR}/DiscoverTests.cmake @ONLY)
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${PROJECT_BINARY_DIR}/DiscoverTests.cmake)
endif()

# Commands through networks that lose, delay and reorder, between two network namespaces; the short form is a test.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND COMMONGROUND_TLS AND NOT CMAKE_CROSSCOMPILING)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/impaired/*.cpp)
  add_executable(impaired_networks ${sources}
    ${PROJECT_SOURCE_DIR}/tests/support/tls_certificates.cpp ${PROJECT_SOURCE_DIR}/tests/support/udp_loopback.cpp)
  target_link_libraries(impaired_networks PRIVATE commonground commonground_warnings PkgConfig::gnutls)
  add_test(NAME Impaired.CommandsArriveOnceAndInOrder COMMAND ${PROJECT_SOURCE_DIR}/scripts/impaired --short)
  set_tests_properties(Impaired.CommandsArriveOnceAndInOrder PROPERTIES
    ENVIRONMENT IMPAIRED_BUILD=${PROJECT_BINARY_DIR} SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()
