# One runner for the tests of the code.
find_package(GTest REQUIRED)

file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/*_test.cpp)
file(GLOB_RECURSE support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.cpp)
list(FILTER sources EXCLUDE REGEX "/tests/compile_fail/")
list(APPEND sources ${support})
list(REMOVE_DUPLICATES sources)
if(sources)
  add_executable(commonground_tests ${sources})
  target_link_libraries(commonground_tests PRIVATE
    commonground commonground_tools commonground_warnings GTest::gtest_main GTest::gmock Threads::Threads)
  # Where a test finds its data, and the programs that it starts.
  target_compile_definitions(commonground_tests PRIVATE
    COMMONGROUND_TESTS_DIR="${PROJECT_SOURCE_DIR}/tests" COMMONGROUND_BUILD_DIR="${PROJECT_BINARY_DIR}")
  target_precompile_headers(commonground_tests PRIVATE ${PROJECT_SOURCE_DIR}/cmake/std_pch.h <gtest/gtest.h>)
  foreach(needed wirelens arena zet_ConsoleLog zet_FileLog)
    if(TARGET ${needed})
      add_dependencies(commonground_tests ${needed})
    endif()
  endforeach()
  set(runner ${PROJECT_BINARY_DIR}/commonground_tests)
  set(directory ${PROJECT_BINARY_DIR})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/DiscoverTests.cmake.in ${PROJECT_BINARY_DIR}/DiscoverTests.cmake @ONLY)
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${PROJECT_BINARY_DIR}/DiscoverTests.cmake)
endif()
