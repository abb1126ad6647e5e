# The inspection tool, the code it shares with tests, and the examples. An empty folder creates no target.

# Adds a program from all sources of a folder, if it has any.
function(commonground_program name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  commonground_keep_own_platform(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE commonground commonground_warnings ${ARGN})
endfunction()

if(COMMONGROUND_EXAMPLES OR COMMONGROUND_TOOLS)
  # CLI11 reads the command lines of wirelens and arena. It is header-only, so a cross build whose target has no such
  # package takes the headers of the building system. Their folder also contains that system's own headers, so they are
  # linked into a folder of this build.
  find_package(CLI11 2.1 CONFIG QUIET)
  if(NOT TARGET CLI11::CLI11 AND CMAKE_CROSSCOMPILING)
    find_path(place CLI/App.hpp PATHS /usr/include /usr/local/include
      NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    if(place)
      set(headers ${PROJECT_BINARY_DIR}/foreign_headers_of_cli11)
      file(MAKE_DIRECTORY ${headers})
      file(CREATE_LINK ${place}/CLI ${headers}/CLI SYMBOLIC)
      add_library(CLI11::CLI11 INTERFACE IMPORTED)
      target_include_directories(CLI11::CLI11 INTERFACE ${headers})
    endif()
    unset(place)
  endif()
endif()

if(COMMONGROUND_EXAMPLES)
  # The client of questions is a coroutine, and so are the players of arena.
  include(CheckCXXSourceCompiles)
  check_cxx_source_compiles("#ifndef __cpp_impl_coroutine\n#error none\n#endif\n#include <coroutine>\nint main() {}"
    COMMONGROUND_HAS_COROUTINES)
  if(TARGET CLI11::CLI11)
    include(${CMAKE_CURRENT_LIST_DIR}/Arena.cmake)
  else()
    message(STATUS "arena is left out: no CLI11 for its command line")
  endif()
  commonground_program(hello examples/hello)
  commonground_program(service examples/service)
  commonground_program(packs examples/packs)
  commonground_program(accounts examples/accounts)
  if(COMMONGROUND_TLS)
    commonground_program(tls examples/tls)
  endif()
  if(COMMONGROUND_UDP)
    commonground_program(udp examples/udp)
  endif()
  commonground_program(cores examples/cores)
  target_link_libraries(cores PRIVATE Threads::Threads)
  if(COMMONGROUND_HAS_COROUTINES)
    commonground_program(questions examples/questions)
  endif()
  # A program loads the log modules from its own folder.
  foreach(program arena hello service)
    foreach(module zet_ConsoleLog zet_FileLog)
      if(TARGET ${program} AND TARGET ${module})
        add_dependencies(${program} ${module})
      endif()
    endforeach()
  endforeach()
endif()
if(NOT (COMMONGROUND_TOOLS OR COMMONGROUND_TESTS OR COMMONGROUND_BENCH OR COMMONGROUND_FUZZ))
  return()
endif()

# One header that includes every class, for the table of the tools.
set(all_classes "#pragma once\n\n")
set(class_headers)
foreach(folder playerdata commands packs)
  file(GLOB headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
  foreach(header ${headers})
    string(APPEND all_classes "#include \"${header}\"\n")
    list(APPEND class_headers ${PROJECT_SOURCE_DIR}/${header})
  endforeach()
endforeach()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/tools/all_classes.h CONTENT "${all_classes}" @ONLY)

# The same headers as text: the reference shows the comments of classes and members.
list(JOIN class_headers "|" files)
set(class_comments ${PROJECT_BINARY_DIR}/generated/tools/class_headers.h)
add_custom_command(OUTPUT ${class_comments}
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${class_comments} -DNAME=class_headers "-DFILES=${files}"
    -P ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
  DEPENDS ${class_headers} ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
  COMMENT "Embedding the headers of the classes" VERBATIM)
# For checks of the sources that build nothing else.
add_custom_target(commonground_generated DEPENDS ${class_comments})

# One header with the files that wirelens prints as parts of what it makes: tools/docs/page.js is docs_page_js.
set(embedded "#pragma once\n\nnamespace tools::embedded\n{\n")
file(GLOB_RECURSE files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/*.lua ${PROJECT_SOURCE_DIR}/tools/*.html
  ${PROJECT_SOURCE_DIR}/tools/*.css ${PROJECT_SOURCE_DIR}/tools/*.js ${PROJECT_SOURCE_DIR}/tools/*.py
  ${PROJECT_SOURCE_DIR}/tools/*.ts)
foreach(file ${files})
  file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR}/tools ${file})
  string(MAKE_C_IDENTIFIER ${name} name)
  file(READ ${file} text)
  string(APPEND embedded "inline constexpr char ${name}[] = R\"embedded(${text})embedded\";\n")
endforeach()
string(APPEND embedded "} // namespace tools::embedded\n")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/tools/embedded_files.h CONTENT "@embedded@" @ONLY)
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
unset(embedded)
unset(text)

file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/*.cpp)
list(FILTER sources EXCLUDE REGEX "/tools/wirelens/")
# libpcap reads captures; it does so from a stream of the C library with a source of its own, as glibc has it. The tool
# is built without it where it is missing, and the library never uses it.
if(NOT WIN32)
  include(CheckSymbolExists)
  set(CMAKE_REQUIRED_DEFINITIONS -D_GNU_SOURCE)
  check_symbol_exists(fopencookie stdio.h COMMONGROUND_HAS_FOPENCOOKIE)
  unset(CMAKE_REQUIRED_DEFINITIONS)
  if(COMMONGROUND_HAS_FOPENCOOKIE)
    pkg_check_modules(pcap QUIET IMPORTED_TARGET libpcap)
  endif()
endif()
if(TARGET PkgConfig::pcap)
  list(FILTER sources EXCLUDE REGEX "/capture_file_none\\.cpp$")
else()
  message(STATUS "Captures are left out of wirelens: no libpcap")
  list(FILTER sources EXCLUDE REGEX "/capture_file_pcap\\.cpp$")
endif()
if(sources)
  add_library(commonground_tools STATIC ${sources} ${class_comments})
  target_link_libraries(commonground_tools PUBLIC commonground PRIVATE commonground_warnings)
  if(TARGET PkgConfig::pcap)
    target_link_libraries(commonground_tools PRIVATE PkgConfig::pcap)
  endif()
  target_include_directories(commonground_tools PRIVATE ${PROJECT_BINARY_DIR}/generated)
  target_precompile_headers(commonground_tools PRIVATE <cmake/std_pch.h>)
else()
  add_library(commonground_tools INTERFACE)
  target_link_libraries(commonground_tools INTERFACE commonground)
endif()

if(COMMONGROUND_TOOLS)
  if(NOT TARGET CLI11::CLI11)
    message(FATAL_ERROR "No CLI11 for the command line of wirelens: install its development package (libcli11-dev on "
      "Debian), or leave the tool out with -DCOMMONGROUND_TOOLS=OFF -DCOMMONGROUND_TESTS=OFF")
  endif()
  commonground_program(wirelens tools/wirelens commonground_tools CLI11::CLI11 Threads::Threads)
  target_compile_definitions(wirelens PRIVATE WIRELENS_VERSION="${PROJECT_VERSION}")
  # The manual page and the completion scripts, which wirelens prints itself.
  if(NOT CMAKE_CROSSCOMPILING AND NOT COMMONGROUND_SANITIZE)
    set(pages ${PROJECT_BINARY_DIR}/wirelens_pages)
    add_custom_command(OUTPUT ${pages}/wirelens.1 ${pages}/wirelens ${pages}/_wirelens
      COMMAND ${CMAKE_COMMAND} -E make_directory ${pages}
      COMMAND wirelens help --man > ${pages}/wirelens.1
      COMMAND wirelens help --completion bash > ${pages}/wirelens
      COMMAND wirelens help --completion zsh > ${pages}/_wirelens
      DEPENDS wirelens COMMENT "Writing the pages of wirelens" VERBATIM)
    add_custom_target(wirelens_pages ALL DEPENDS ${pages}/wirelens.1)
  endif()
endif()
