# Two processes that talk to each other; in a cross build also one of each system.
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/interop/*.cpp)
add_executable(interop ${sources} ${PROJECT_SOURCE_DIR}/tests/support/golden.cpp)
target_link_libraries(interop PRIVATE commonground commonground_tools commonground_warnings)
target_precompile_headers(interop PRIVATE <cmake/std_pch.h>)

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(golden ${PROJECT_SOURCE_DIR}/tests/golden)
if(CMAKE_CROSSCOMPILING)
  set(COMMONGROUND_NATIVE_BUILD ${PROJECT_SOURCE_DIR}/build/dev CACHE PATH
    "Build folder of this system's own programs, which tests of a cross build compare with")
  if(WIN32)
    set(foreign windows)
  else()
    set(foreign ${COMMONGROUND_ARCHITECTURE})
  endif()
  set(pairs linux:${foreign} ${foreign}:linux ${foreign}:${foreign})
  set(places --native ${COMMONGROUND_NATIVE_BUILD} --foreign ${foreign} ${PROJECT_BINARY_DIR}
    -- ${CMAKE_CROSSCOMPILING_EMULATOR})
elseif(UNIX)
  set(pairs linux:linux)
  set(places --native ${PROJECT_BINARY_DIR})
else()
  set(pairs)
endif()
foreach(pair ${pairs})
  string(REPLACE ":" ";" pair ${pair})
  list(GET pair 0 host)
  list(GET pair 1 visitor)
  add_test(NAME Interop.${host}_serves_${visitor}
    COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/tests/interop/check_interop.py ${host} ${visitor} ${golden}
      ${places})
  add_test(NAME Interop.arena_of_${host}_with_${visitor}
    COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/tests/interop/check_arena.py ${host} ${visitor} ${places})
  set_tests_properties(Interop.${host}_serves_${visitor} Interop.arena_of_${host}_with_${visitor}
    PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77)
endforeach()
if(CMAKE_CROSSCOMPILING)
  add_test(NAME House.LibraryExportsOnlyItsOwnNames
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/check_symbols.py $<TARGET_FILE:commonground>
      ${PROJECT_SOURCE_DIR})
  add_test(NAME Interop.wirelens_answers_alike
    COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/tests/interop/compare_wirelens.py ${golden} ${places})
  # The platform is this system's.
  add_test(NAME Interop.players_of_linux_and_${foreign}
    COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/tests/interop/check_players.py ${places})
  set_tests_properties(Interop.players_of_linux_and_${foreign} PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77)
  set_tests_properties(Interop.wirelens_answers_alike PROPERTIES TIMEOUT 900 PROCESSORS 2 SKIP_RETURN_CODE 77)
endif()
