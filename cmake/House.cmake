# The rules of the house as tests: floors, headers, what must not compile, what the library exports.
# A sanitized build leaves them out: its symbols are not the library's, and the other rules hold in every build.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(scripts ${PROJECT_SOURCE_DIR}/scripts)

add_test(NAME House.FloorsStand COMMAND Python3::Interpreter ${scripts}/check_layers.py ${PROJECT_SOURCE_DIR})
add_test(NAME House.EveryMemberStandsInItsOrder COMMAND Python3::Interpreter ${scripts}/check_members.py ${PROJECT_SOURCE_DIR})
add_test(NAME House.FloorCheckFindsEachFault COMMAND Python3::Interpreter ${scripts}/check_layers.py --self-test)

# Other versions format some lines differently, so the script wants this one, and fails without it.
add_test(NAME House.ClangFormatHasNothingToChange COMMAND ${scripts}/check_format)

# Every public header alone in a file of its own, without precompiled headers.
set(files)
foreach(floor ${COMMONGROUND_FLOORS})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${floor}/*.h)
  list(FILTER headers EXCLUDE REGEX "/inner/|^framework/modules/")
  foreach(header ${headers})
    set(file ${PROJECT_BINARY_DIR}/header_check/${header}.cpp)
    file(CONFIGURE OUTPUT ${file} CONTENT "#include \"@header@\"\n#include \"@header@\"\n" @ONLY)
    list(APPEND files ${file})
  endforeach()
endforeach()
if(files)
  add_library(header_check OBJECT EXCLUDE_FROM_ALL ${files})
  target_link_libraries(header_check PRIVATE commonground commonground_warnings)
  target_compile_options(header_check PRIVATE -O0 -g0)
  include(ProcessorCount)
  ProcessorCount(processors)
  add_test(NAME House.EveryHeaderCompilesAlone
    COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target header_check --parallel ${processors})
  set_tests_properties(House.EveryHeaderCompilesAlone PROPERTIES PROCESSORS ${processors} TIMEOUT 900)
endif()

# The public ones in one file, as hosts of other habits compile them.
list(FILTER files EXCLUDE REGEX "/packaging/wire/")
string(REGEX REPLACE "[^;]*/header_check/([^;]+)\\.cpp;?" "#include \"\\1\"\n" includes "${files}")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/header_check/all_headers.cpp CONTENT "${includes}" @ONLY)
foreach(habit WithoutExceptions:-fno-exceptions WithDestructorsWatched:-Wnon-virtual-dtor)
  string(REPLACE ":" ";" habit ${habit})
  list(GET habit 0 name)
  list(GET habit 1 option)
  add_test(NAME House.HeadersCompile${name}
    COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 -Wall -Wextra -Werror ${option} -I${PROJECT_SOURCE_DIR} -fsyntax-only
      ${PROJECT_BINARY_DIR}/header_check/all_headers.cpp)
endforeach()

file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/compile_fail/*.cpp)
if(NOT files)
  message(FATAL_ERROR "tests/compile_fail is empty")
endif()
foreach(file ${files})
  get_filename_component(name ${file} NAME_WE)
  add_test(NAME CompileFail.${name}
    COMMAND Python3::Interpreter ${scripts}/check_compile_fail.py ${file}
      ${CMAKE_CXX_COMPILER} -std=c++20 -Wall -Wextra -I${PROJECT_SOURCE_DIR})
endforeach()

# The trace of commands, which a build of the library switches on, in a program that is compiled with the switch.
add_executable(traced ${PROJECT_SOURCE_DIR}/tests/traced/traced.cpp ${PROJECT_SOURCE_DIR}/dispatch/trace.cpp)
target_compile_definitions(traced PRIVATE COMMONGROUND_TRACE_COMMANDS)
target_link_libraries(traced PRIVATE commonground commonground_warnings)
add_test(NAME House.TraceStandsInFrontOfTheHandler COMMAND traced)
set_tests_properties(House.TraceStandsInFrontOfTheHandler PROPERTIES PASS_REGULAR_EXPRESSION
  "^\\*\\*\\* [0-9/]+ [0-9:.]+ \\*\\*\\* <<<\nits fields\nhandled\n$")

if(NOT WIN32)
  add_test(NAME House.LibraryExportsOnlyItsOwnNames
    COMMAND Python3::Interpreter ${scripts}/check_symbols.py $<TARGET_FILE:commonground> ${PROJECT_SOURCE_DIR})
endif()

# No folder of this machine is in what is built, and another folder builds the same bytes. The objects stand for all:
# one whose exceptions name their file, one of the order machinery, one with another library's headers.
set(objects framework/buffer.cpp packs/achievement.cpp transport/net/tcp_server.cpp)
list(TRANSFORM objects REPLACE "(.+)" "CMakeFiles/commonground.dir/\\1${CMAKE_CXX_OUTPUT_EXTENSION}")
if(NOT WIN32)
  set(built $<TARGET_FILE:commonground>)
  foreach(target wirelens zet_ConsoleLog zet_FileLog)
    if(TARGET ${target})
      list(APPEND built $<TARGET_FILE:${target}>)
    endif()
  endforeach()
  add_test(NAME House.NoFolderIsInWhatIsBuilt
    COMMAND Python3::Interpreter ${scripts}/check_folders.py paths ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR} -- ${built})
  add_test(NAME House.AnotherFolderBuildsTheSameBytes
    COMMAND Python3::Interpreter ${scripts}/check_folders.py copies ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}
      ${CMAKE_CXX_COMPILER} ${objects})
  set_tests_properties(House.AnotherFolderBuildsTheSameBytes PROPERTIES PROCESSORS 2 TIMEOUT 600)
endif()

# The protections of COMMONGROUND_HARDENING, read back from what was built.
if(COMMONGROUND_HARDENING AND NOT WIN32)
  add_test(NAME House.WhatIsBuiltIsHardened COMMAND Python3::Interpreter ${scripts}/check_hardening.py ${built})
endif()

# The example in README.md is the one that is compiled.
add_test(NAME House.ReadmeShowsTheCompiledExample
  COMMAND Python3::Interpreter -c "import sys; sys.exit(open(sys.argv[2]).read() not in open(sys.argv[1]).read())"
    ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/examples/hello/hello.cpp)

# What is installed, as a host sees it.
if(COMMONGROUND_INSTALL)
  add_test(NAME House.InstalledPackageServesAHost
    COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
      -DCOMPILER=${CMAKE_CXX_COMPILER} -DVERSION=${PROJECT_VERSION}
      -P ${PROJECT_SOURCE_DIR}/tests/package/check.cmake)
endif()
add_test(NAME House.WithoutTlsThereIsNoGnuTls
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
    -DCOMPILER=${CMAKE_CXX_COMPILER} -P ${PROJECT_SOURCE_DIR}/tests/without_tls/check.cmake)
add_test(NAME House.AHostMayHaveTheTreeInItsOwn
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
    -DCOMPILER=${CMAKE_CXX_COMPILER} -P ${PROJECT_SOURCE_DIR}/tests/subproject/check.cmake)
