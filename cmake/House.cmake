# The rules of the tree as tests: floors, headers, what must not compile, what the library exports.
# A sanitized build omits them: its symbols differ, and the other rules do not depend on the build.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(scripts ${PROJECT_SOURCE_DIR}/scripts)

add_test(NAME House.EveryIncludeStaysWithinItsFloor COMMAND Python3::Interpreter ${scripts}/check_layers.py ${PROJECT_SOURCE_DIR})
add_test(NAME House.EveryMemberIsInItsOrder COMMAND Python3::Interpreter ${scripts}/check_members.py ${PROJECT_SOURCE_DIR})
add_test(NAME House.FloorCheckFindsEachFault COMMAND Python3::Interpreter ${scripts}/check_layers.py --self-test)

# Other versions format some lines differently, so the script requires version 14.
add_test(NAME House.ClangFormatHasNothingToChange COMMAND ${scripts}/check_format)

# What the library's objects call; those of another system's format are read on that system.
set(objects $<TARGET_OBJECTS:commonground>)
if(TARGET zet_Secure)
  list(APPEND objects $<TARGET_OBJECTS:zet_Secure>)
endif()
add_test(NAME House.OneDoorToTheNetwork
  COMMAND Python3::Interpreter ${scripts}/check_door.py ${objects} COMMAND_EXPAND_LISTS)
add_test(NAME House.DoorCheckFindsACallOutside COMMAND Python3::Interpreter ${scripts}/check_door.py --self-test)

# Every public header alone in its own source file, without precompiled headers.
set(files)
foreach(floor ${COMMONGROUND_FLOORS})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${floor}/*.h)
  list(FILTER headers EXCLUDE REGEX "/inner/|^net/door/|^framework/(modules|platform)/")
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

# All public headers in one file, with compiler options that some hosts use.
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

# What some of them cost the files that include them, in lines after preprocessing: a tenth above what they have.
# A heavier standard header in one that many include shows here.
add_test(NAME House.HeadersStayLight
  COMMAND Python3::Interpreter ${scripts}/check_preprocessed.py
    framework/string.h=15200 framework/uuid.h=15200 framework/time.h=15200 framework/buffer.h=16600
    packaging/command_head.h=15700 packaging/cmd_packager.h=21400 dispatch/analyser.h=21500
    playerdata/items.h=15300 commands/registry.h=21900 packs/home.h=27100 host/handlers.h=46000 host/tasks.h=56300
    host/pack_router.h=60800
    -- ${CMAKE_CXX_COMPILER} -std=c++20 -I${PROJECT_SOURCE_DIR})

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

# The trace of commands, an option of the library, in a program compiled with that option.
add_executable(traced ${PROJECT_SOURCE_DIR}/tests/traced/traced.cpp ${PROJECT_SOURCE_DIR}/dispatch/trace.cpp)
target_compile_definitions(traced PRIVATE COMMONGROUND_TRACE_COMMANDS)
target_link_libraries(traced PRIVATE commonground commonground_warnings)
add_test(NAME House.TracePrecedesTheHandler COMMAND traced)
set_tests_properties(House.TracePrecedesTheHandler PROPERTIES PASS_REGULAR_EXPRESSION
  "^\\*\\*\\* [0-9/]+ [0-9:.]+ \\*\\*\\* <<<\nits fields\nhandled\n$")

if(NOT WIN32)
  add_test(NAME House.LibraryExportsOnlyItsOwnNames
    COMMAND Python3::Interpreter ${scripts}/check_symbols.py $<TARGET_FILE:commonground> ${PROJECT_SOURCE_DIR})
endif()
if(TARGET zet_Secure)
  add_test(NAME House.TheModuleForTlsExportsItsEntryOnly
    COMMAND Python3::Interpreter ${scripts}/check_symbols.py $<TARGET_FILE:zet_Secure> ${PROJECT_SOURCE_DIR})
endif()

# The relocations that name a symbol, a twentieth above what GCC and Clang give. Where the options are those of the
# preset dev and the compiler is GCC, also the code.
if(NOT WIN32)
  set(most 840)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64"
     AND CMAKE_CXX_FLAGS_DEBUG STREQUAL "-O1 -g1 -D_GLIBCXX_ASSERTIONS" AND CMAKE_BUILD_TYPE STREQUAL "Debug")
    list(APPEND most 2400000)
  endif()
  add_test(NAME House.TheLibraryLoadsFast
    COMMAND Python3::Interpreter ${scripts}/check_relocations.py $<TARGET_FILE:commonground> ${preemptible} ${most})
endif()

# Built files contain no path of this machine, and builds in two folders give the same bytes. These objects represent
# all: one whose exceptions name their file, one of the order machinery, one with another library's headers.
set(objects framework/buffer.cpp packs/achievement.cpp net/tcp/server.cpp)
list(TRANSFORM objects REPLACE "(.+)" "CMakeFiles/commonground.dir/\\1${CMAKE_CXX_OUTPUT_EXTENSION}")
if(NOT WIN32)
  set(built $<TARGET_FILE:commonground>)
  foreach(target wirelens zet_ConsoleLog zet_FileLog zet_Secure)
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

# The protections of COMMONGROUND_HARDENING, checked in the built files.
if(COMMONGROUND_HARDENING AND NOT WIN32)
  add_test(NAME House.WhatIsBuiltIsHardened COMMAND Python3::Interpreter ${scripts}/check_hardening.py ${built})
endif()

# The example in README.md is identical to the compiled one.
add_test(NAME House.ReadmeShowsTheCompiledExample
  COMMAND Python3::Interpreter -c "import sys; sys.exit(open(sys.argv[2]).read() not in open(sys.argv[1]).read())"
    ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/examples/hello/hello.cpp)

# The code blocks of the pages for hosts, with coroutines if the compiler has them.
add_test(NAME House.PageCheckFindsTheBlocks COMMAND Python3::Interpreter ${scripts}/check_pages.py --self-test)
if(COMMONGROUND_HAS_COROUTINES)
  add_test(NAME House.CodeInThePagesCompiles
    COMMAND Python3::Interpreter ${scripts}/check_pages.py ${PROJECT_SOURCE_DIR}/tests/pages/preamble.inc
      ${PROJECT_SOURCE_DIR}/docs/hosts.md ${PROJECT_SOURCE_DIR}/docs/tutorial.md ${PROJECT_SOURCE_DIR}/README.md
      -- ${CMAKE_CXX_COMPILER} -std=c++20 -Wall -Wextra -Wno-unused -Werror -I${PROJECT_SOURCE_DIR})
endif()

# The byte examples of the page about the wire.
add_test(NAME House.WirePageCheckFindsTheExamples COMMAND Python3::Interpreter ${scripts}/check_wire_page.py --self-test)
add_test(NAME House.BytesInTheWirePageRead
  COMMAND Python3::Interpreter ${scripts}/check_wire_page.py $<TARGET_FILE:wirelens> ${PROJECT_SOURCE_DIR}/docs/wire.md)

# What each example prints is in its output.txt.
set(examples)
set(names hello questions tls udp packs accounts)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # Only there Systems can share a port.
  list(APPEND names cores)
endif()
foreach(example ${names})
  if(TARGET ${example})
    list(APPEND examples ${example})
    add_test(NAME House.ExamplePrintsItsOutput.${example}
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${example}> -DEXAMPLE=${PROJECT_SOURCE_DIR}/examples/${example}
        -DPLACE=${PROJECT_BINARY_DIR}/example_files -P ${PROJECT_SOURCE_DIR}/tests/examples/check.cmake)
  endif()
endforeach()
# The example that serves until it gets a signal is driven by a script.
if(TARGET service AND NOT WIN32)
  add_test(NAME House.ExampleServesUntilItIsToEnd
    COMMAND Python3::Interpreter ${scripts}/check_service.py $<TARGET_FILE:service>)
  set_tests_properties(House.ExampleServesUntilItIsToEnd PROPERTIES TIMEOUT 120)
  list(APPEND examples service)
endif()
string(REPLACE ";" "," examples "${examples}")

# The reference of the installed headers.
find_program(COMMONGROUND_DOXYGEN doxygen)
if(COMMONGROUND_DOXYGEN AND COMMONGROUND_INSTALL)
  add_test(NAME House.ReferenceBuildsWithoutAWarning
    COMMAND Python3::Interpreter ${scripts}/reference.py build ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR})
  add_test(NAME House.EveryPublicNameHasAComment
    COMMAND Python3::Interpreter ${scripts}/reference.py check ${PROJECT_BINARY_DIR})
  set_tests_properties(House.ReferenceBuildsWithoutAWarning PROPERTIES FIXTURES_SETUP reference)
  set_tests_properties(House.EveryPublicNameHasAComment PROPERTIES FIXTURES_REQUIRED reference)
  add_test(NAME House.ReferenceCheckFindsEachFault COMMAND Python3::Interpreter ${scripts}/reference.py --self-test)
elseif(NOT COMMONGROUND_DOXYGEN)
  message(STATUS "The tests of the reference are left out: doxygen is missing")
endif()

# The installed package, used by a host.
add_test(NAME House.InstalledCheckFindsEachFault COMMAND Python3::Interpreter ${scripts}/check_installed.py --self-test)
if(COMMONGROUND_INSTALL)
  add_test(NAME House.InstalledHeadersShowNothingInternal
    COMMAND Python3::Interpreter ${scripts}/check_installed.py ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR})
  add_test(NAME House.InstalledPackageServesAHost
    COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
      -DCOMPILER=${CMAKE_CXX_COMPILER} -DVERSION=${PROJECT_VERSION} -DEXAMPLES=${examples}
      -P ${PROJECT_SOURCE_DIR}/tests/package/check.cmake)
endif()
add_test(NAME House.WithoutTlsThereIsNoGnuTls
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
    -DCOMPILER=${CMAKE_CXX_COMPILER} -P ${PROJECT_SOURCE_DIR}/tests/without_tls/check.cmake)
add_test(NAME House.AHostMayHaveTheTreeInItsOwn
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
    -DCOMPILER=${CMAKE_CXX_COMPILER} -DEXAMPLES=${examples} -P ${PROJECT_SOURCE_DIR}/tests/subproject/check.cmake)
