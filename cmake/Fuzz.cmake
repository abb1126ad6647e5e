# Each fuzz/*_fuzz.cpp is a libFuzzer program.
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/fuzz/*_fuzz.cpp)
file(GLOB support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/fuzz/support/*.cpp)
foreach(source ${sources})
  get_filename_component(name ${source} NAME_WE)
  add_executable(${name} ${source} ${support})
  target_link_libraries(${name} PRIVATE commonground commonground_tools commonground_warnings)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endforeach()
