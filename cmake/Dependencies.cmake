# The libraries used internally. No public header includes them.
find_package(Threads REQUIRED)

if(WIN32 AND COMMONGROUND_TLS)
  message(STATUS "TLS is left out: it is not built for Windows")
  set(COMMONGROUND_TLS OFF)
endif()

add_library(commonground_dependencies INTERFACE)
target_link_libraries(commonground_dependencies INTERFACE Threads::Threads ${CMAKE_DL_LIBS})
if(WIN32)
  # There the operating system provides digests and random bytes.
  target_link_libraries(commonground_dependencies INTERFACE bcrypt ws2_32)
else()
  find_package(PkgConfig REQUIRED)
  # The digests.
  pkg_check_modules(nettle REQUIRED IMPORTED_TARGET nettle)
  target_link_libraries(commonground_dependencies INTERFACE PkgConfig::nettle)
  if(COMMONGROUND_TLS)
    pkg_check_modules(gnutls REQUIRED IMPORTED_TARGET gnutls)
  endif()
endif()

# Without it a UDP server cannot open a port; the rest does not change.
option(COMMONGROUND_UDP "Build the connections over UDP (needs COMMONGROUND_TLS, ngtcp2 with GnuTLS and a POSIX system)" ON)
if(COMMONGROUND_UDP AND COMMONGROUND_TLS AND NOT WIN32)
  pkg_check_modules(ngtcp2 IMPORTED_TARGET libngtcp2 libngtcp2_crypto_gnutls)
  if(NOT ngtcp2_FOUND)
    message(FATAL_ERROR "No ngtcp2 with GnuTLS for connections over UDP: install its development packages "
      "(libngtcp2-dev and libngtcp2-crypto-gnutls-dev on Debian), or leave them out with -DCOMMONGROUND_UDP=OFF")
  endif()
endif()
if(NOT TARGET PkgConfig::ngtcp2)
  message(STATUS "Connections over UDP are left out")
  set(COMMONGROUND_UDP OFF)
endif()

# Nothing that is printed depends on the locale.
target_compile_definitions(commonground_dependencies INTERFACE FMT_HEADER_ONLY FMT_STATIC_THOUSANDS_SEPARATOR=',')
