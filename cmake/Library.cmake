# The library and its modules. One folder per floor; a new file needs no line here.
set(COMMONGROUND_FLOORS framework packaging dispatch net transport runtime playerdata commands packs host)

# Removes the files for the other platform from a list, by their names.
macro(commonground_keep_own_platform sources)
  if(WIN32)
    list(FILTER ${sources} EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER ${sources} EXCLUDE REGEX "_win32(_test)?\\.cpp$")
  endif()
endmacro()

set(sources)
foreach(floor ${COMMONGROUND_FLOORS})
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${floor}/*.cpp)
  list(APPEND sources ${found})
endforeach()
list(FILTER sources EXCLUDE REGEX "/framework/modules/")
commonground_keep_own_platform(sources)
# What needs GnuTLS or ngtcp2 is a module of its own: the files that end in _gnutls, and those of connections over UDP.
set(secure ${sources})
list(FILTER secure INCLUDE REGEX "/net/((tls/)?inner/[a-z_]+_gnutls|quic/inner/[a-z_]+)\\.cpp$")
list(FILTER secure EXCLUDE REGEX "/udp_router\\.cpp$")
list(REMOVE_ITEM sources ${secure})
if(COMMONGROUND_TLS)
  list(FILTER sources EXCLUDE REGEX "/secure_module_none\\.cpp$")
else()
  list(FILTER sources EXCLUDE REGEX "/secure_module\\.cpp$")
endif()
if(COMMONGROUND_UDP)
  list(FILTER secure EXCLUDE REGEX "/udp_router_none\\.cpp$")
else()
  list(FILTER secure INCLUDE REGEX "_(gnutls|none)\\.cpp$")
endif()

# What runs once per connection or less often, and text forms, need half the code with -Os. Of an inline function that
# several files have, the linker keeps the first copy, so these files come last.
set(rare ${sources})
list(FILTER rare INCLUDE REGEX "/(\
host/(metrics|registration|service)|\
host/inner/(drain|event_source|http_request|http_server|manager|metric_families|options|registration_parts|service_parts)|\
runtime/[a-z_]+|runtime/inner/[a-z_]+|\
framework/(app|format|json|log|message|module|property|property_factory|string_helper|inner/log_mailbox)|\
net/(address_filter|end_cause|door/names|inner/(end_log|secure_module(_none)?)|session/address|tls/context)|\
transport/(address_file|framework_client_proxy_socket|framework_client_socket))\\.cpp$")
list(REMOVE_ITEM sources ${rare})
list(APPEND sources ${rare})

add_library(commonground SHARED ${sources})
add_library(commonground::commonground ALIAS commonground)
# Before 1.0 each minor version is incompatible with the one before; the CMake package states the same.
set(soversion ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(soversion 0.${PROJECT_VERSION_MINOR})
endif()
set_target_properties(commonground PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${soversion})
target_compile_features(commonground PUBLIC cxx_std_20)
target_include_directories(commonground PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/commonground>)
target_compile_definitions(commonground PRIVATE COMMONGROUND_BUILDING)
if(COMMONGROUND_TRACE_COMMANDS)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/dispatch/trace.cpp APPEND
    PROPERTY COMPILE_DEFINITIONS COMMONGROUND_TRACE_COMMANDS)
endif()
target_link_libraries(commonground PRIVATE commonground_warnings commonground_dependencies)
target_precompile_headers(commonground PRIVATE <cmake/std_pch.h>)
if(NOT WIN32)
  set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set(preemptible ${PROJECT_SOURCE_DIR}/cmake/preemptible.list)
  # No function of the library is interposed from outside, so calls within it can be direct. A header has
  # constants but no variables, so that a program may have its own copy.
  target_compile_options(commonground PRIVATE -fno-semantic-interposition $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  # References within the library are bound when it is linked, except those to the variables in the list.
  target_link_options(commonground PRIVATE -Wl,--version-script=${exports} -Wl,--dynamic-list=${preemptible})
  set_property(TARGET commonground APPEND PROPERTY LINK_DEPENDS ${exports} ${preemptible})
endif()
# The many classes of these floors need a third less code with -O2 than with CMake's -O3. Those that are sent many times
# a second keep -O3.
set(many ${sources})
list(FILTER many INCLUDE REGEX "/((commands|packs|playerdata)/[a-z0-9_]+|host/(inner/)?[a-z0-9_]+)\\.cpp$")
list(FILTER many EXCLUDE REGEX "/commands/(camera|device|race_pawn)\\.cpp$|/packs/(home|envelope)\\.cpp$")
set_property(SOURCE ${many} APPEND PROPERTY COMPILE_OPTIONS $<$<CONFIG:Release>:-O2>)
set_property(SOURCE ${rare} APPEND PROPERTY COMPILE_OPTIONS $<$<CONFIG:Release>:-Os>)

if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND NOT WIN32)
  # 64-bit time_t, for times after 2038, in the one file that converts times. Elsewhere a time_t may be passed to
  # GnuTLS, which uses the width that it was built with.
  set_source_files_properties(${PROJECT_SOURCE_DIR}/framework/platform/platform_posix.cpp PROPERTIES
    COMPILE_DEFINITIONS "_TIME_BITS=64;_FILE_OFFSET_BITS=64" SKIP_PRECOMPILE_HEADERS ON)
endif()

# The log modules are loaded by name at run time.
foreach(module ConsoleLog:console_log FileLog:file_log)
  string(REPLACE ":" ";" module ${module})
  list(GET module 0 name)
  list(GET module 1 file)
  set(source ${PROJECT_SOURCE_DIR}/framework/modules/${file}.cpp)
  if(EXISTS ${source})
    add_library(zet_${name} MODULE ${source})
    set_target_properties(zet_${name} PROPERTIES PREFIX "")
    target_link_libraries(zet_${name} PRIVATE commonground commonground_warnings)
  endif()
endforeach()

# Loaded by name when it is first needed: see net/inner/secure_module.h.
if(COMMONGROUND_TLS)
  set(exports ${PROJECT_SOURCE_DIR}/cmake/secure_exports.map)
  add_library(zet_Secure MODULE ${secure})
  set_target_properties(zet_Secure PROPERTIES PREFIX "" OUTPUT_NAME zet_Secure-${PROJECT_VERSION} DEBUG_POSTFIX "")
  target_compile_options(zet_Secure PRIVATE -fno-semantic-interposition)
  target_link_options(zet_Secure PRIVATE -Wl,--version-script=${exports})
  set_property(TARGET zet_Secure APPEND PROPERTY LINK_DEPENDS ${exports})
  target_link_libraries(zet_Secure PRIVATE
    commonground commonground_warnings commonground_dependencies PkgConfig::gnutls)
  if(COMMONGROUND_UDP)
    target_link_libraries(zet_Secure PRIVATE PkgConfig::ngtcp2)
  endif()
  target_precompile_headers(zet_Secure PRIVATE <cmake/std_pch.h>)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/net/inner/secure_module.cpp APPEND PROPERTY
    COMPILE_DEFINITIONS COMMONGROUND_VERSION="${PROJECT_VERSION}")
  list(FILTER secure INCLUDE REGEX "/(source|store|verify)_gnutls\\.cpp$")
  set_property(SOURCE ${secure} APPEND PROPERTY COMPILE_OPTIONS $<$<CONFIG:Release>:-Os>)
endif()
