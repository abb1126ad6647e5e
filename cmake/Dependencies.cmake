# The libraries that stand behind the interface. None of them shows in a public header.
find_package(Threads REQUIRED)

add_library(commonground_dependencies INTERFACE)
target_link_libraries(commonground_dependencies INTERFACE Threads::Threads ${CMAKE_DL_LIBS})
if(WIN32)
  # Digests and random bytes are the system's own there.
  target_link_libraries(commonground_dependencies INTERFACE bcrypt ws2_32 mswsock)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(gnutls REQUIRED IMPORTED_TARGET gnutls)
  target_link_libraries(commonground_dependencies INTERFACE PkgConfig::gnutls)
endif()
# Asio's sources are compiled into one file of transport/net; its own visibility pragma would export them.
target_compile_definitions(commonground_dependencies INTERFACE
  FMT_HEADER_ONLY
  ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_SEPARATE_COMPILATION ASIO_DISABLE_VISIBILITY
  $<$<PLATFORM_ID:Windows>:ASIO_DISABLE_IOCP>)
