# Warnings, sanitizers and the compiler cache.
add_library(commonground_warnings INTERFACE)
target_compile_options(commonground_warnings INTERFACE
  -Wall -Wextra -Wpedantic $<$<BOOL:${COMMONGROUND_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # A false alarm of this compiler with -O3, for a literal + a std::string (GCC bug 105651).
  target_compile_options(commonground_warnings INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 15)
  # Such a Clang reports the deprecated function that std::stable_sort of libstdc++ 12 calls itself. GCC and older versions
  # of Clang report what the library's own code calls.
  target_compile_options(commonground_warnings INTERFACE -Wno-deprecated-declarations)
endif()

# For the tests and the fuzz targets too, since they compile some of the library's private headers.
if(NOT COMMONGROUND_FAST_PATHS)
  add_compile_definitions(COMMONGROUND_WITHOUT_FAST_PATHS)
endif()

if(COMMONGROUND_SANITIZE)
  add_compile_options(-fsanitize=${COMMONGROUND_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${COMMONGROUND_SANITIZE})
endif()
if(COMMONGROUND_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "libFuzzer comes with Clang: use the preset fuzz")
  endif()
  # Coverage of all code; the fuzz targets add the driver when they are linked.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Protections against exploits of memory faults. A sanitizer detects the faults itself and needs the plain calls.
if(COMMONGROUND_HARDENING AND NOT COMMONGROUND_SANITIZE AND NOT WIN32)
  include(CheckCXXCompilerFlag)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  foreach(flag -fstack-protector-strong -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "COMMONGROUND_HAS${flag}" has)
    # Clang only warns of a flag for another processor.
    set(CMAKE_REQUIRED_FLAGS -Werror)
    check_cxx_compiler_flag(${flag} ${has})
    unset(CMAKE_REQUIRED_FLAGS)
    if(${has})
      add_compile_options(${flag})
    endif()
  endforeach()
  # Copies are checked in optimised code only.
  set(configurations ${CMAKE_CONFIGURATION_TYPES} ${CMAKE_BUILD_TYPE})
  list(REMOVE_DUPLICATES configurations)
  foreach(configuration ${configurations})
    string(TOUPPER ${configuration} upper)
    if("${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${upper}}" MATCHES "-O([1-9sgz]|fast)")
      add_compile_options($<$<CONFIG:${configuration}>:-U_FORTIFY_SOURCE>
        $<$<CONFIG:${configuration}>:-D_FORTIFY_SOURCE=3>)
    endif()
  endforeach()
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()

# Built files name source files by their path within the tree, so that the path of the tree appears nowhere: neither the
# path given to the compiler nor the path relative to the build folder that the cache uses.
file(RELATIVE_PATH up ${CMAKE_BINARY_DIR} ${PROJECT_SOURCE_DIR})
string(REGEX REPLACE "/$" "" up "${up}")
add_compile_options(
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=${up}/=)
if(up MATCHES "[^./]")
  # The build folder is outside the tree.
  add_compile_options(-ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
endif()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# The cache uses paths relative to the build folder and ignores times and macros kept in a precompiled header, so that
# copies of the tree share their objects.
find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

# Addresses that only move with the file are packed: two bits each instead of 24 bytes. Such a file asks for glibc 2.36
# or later when it is loaded, so it is packed only where it is built with one. Some linkers only warn of an option
# that they do not know.
if(NOT WIN32)
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-z,pack-relative-relocs)
  check_cxx_source_compiles("
    #include <features.h>
    #if !__GLIBC_PREREQ(2, 36)
    #error
    #endif
    int main() { return 0; }" COMMONGROUND_PACKS_RELOCATIONS FAIL_REGEX "warning:")
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(COMMONGROUND_PACKS_RELOCATIONS)
    add_link_options(-Wl,-z,pack-relative-relocs)
  endif()
endif()
