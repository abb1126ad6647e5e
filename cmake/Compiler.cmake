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

# A precompiled header keeps times and macros to itself, which ccache must be told not to mind.
find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
endif()
