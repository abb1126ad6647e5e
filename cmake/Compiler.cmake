# Warnings, sanitizers and the compiler cache.
add_library(commonground_warnings INTERFACE)
target_compile_options(commonground_warnings INTERFACE
  -Wall -Wextra -Wpedantic $<$<BOOL:${COMMONGROUND_WERROR}>:-Werror>)

if(COMMONGROUND_SANITIZE)
  add_compile_options(-fsanitize=${COMMONGROUND_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${COMMONGROUND_SANITIZE})
endif()
if(COMMONGROUND_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "libFuzzer comes with Clang: use the preset fuzz")
  endif()
  # Coverage for all code; the fuzz targets add the driver at their own link.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# A file is called by its place in the tree, so that the folder of the tree shows nowhere in what is built: neither as
# the compiler was given it, nor as the cache gives it, seen from the build folder.
file(RELATIVE_PATH up ${CMAKE_BINARY_DIR} ${PROJECT_SOURCE_DIR})
string(REGEX REPLACE "/$" "" up "${up}")
add_compile_options(
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=${up}/=)
if(up MATCHES "[^./]")
  # The build folder lies elsewhere.
  add_compile_options(-ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
endif()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# The cache is told to see paths from the build folder, and not to mind what a precompiled header keeps of times and
# macros. Copies of the tree then share what they compile.
find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
endif()
