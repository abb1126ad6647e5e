# Each bench/*_bench.cpp is a program with its own main.
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/*_bench.cpp)
file(GLOB support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/support/*.cpp)
# Those that fork and ask epoll are of Linux alone.
if(WIN32)
  list(FILTER sources EXCLUDE REGEX "/(socket|idle)_bench\\.cpp$")
  list(FILTER support EXCLUDE REGEX "/raw_echo\\.cpp$")
endif()
foreach(source ${sources})
  get_filename_component(name ${source} NAME_WE)
  add_executable(${name} ${source} ${support})
  target_link_libraries(${name} PRIVATE commonground commonground_tools commonground_warnings)
endforeach()
