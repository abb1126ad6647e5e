# The inspection tool, the code it shares with tests, and the examples. A folder that is still empty makes no target.

# Adds a program from all sources of a folder, if there are any.
function(commonground_program name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  commonground_keep_own_platform(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE commonground commonground_warnings ${ARGN})
endfunction()

# One header that includes every class, for the table of the tools.
set(all_classes "#pragma once\n\n")
foreach(folder playerdata commands packs)
  file(GLOB headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
  foreach(header ${headers})
    string(APPEND all_classes "#include \"${header}\"\n")
  endforeach()
endforeach()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/tools/all_classes.h CONTENT "${all_classes}" @ONLY)

file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/*.cpp)
list(FILTER sources EXCLUDE REGEX "/tools/wirelens/")
if(sources)
  add_library(commonground_tools STATIC ${sources})
  target_link_libraries(commonground_tools PUBLIC commonground PRIVATE commonground_warnings)
  target_include_directories(commonground_tools PRIVATE ${PROJECT_BINARY_DIR}/generated)
  target_precompile_headers(commonground_tools PRIVATE ${PROJECT_SOURCE_DIR}/cmake/std_pch.h)
else()
  add_library(commonground_tools INTERFACE)
  target_link_libraries(commonground_tools INTERFACE commonground)
endif()

commonground_program(wirelens tools/wirelens commonground_tools)
commonground_program(arena examples/arena)
commonground_program(hello examples/hello)

# The log modules are found beside the program that loads them.
foreach(program arena hello)
  foreach(module zet_ConsoleLog zet_FileLog)
    if(TARGET ${program} AND TARGET ${module})
      add_dependencies(${program} ${module})
    endif()
  endforeach()
endforeach()
