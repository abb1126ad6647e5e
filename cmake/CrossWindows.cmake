# A build for Windows on another system: its headers, its runtime, and how its programs run.

# Header-only libraries come from the packages of the building system. Their folder also contains that system's own
# headers, so each library is linked into a folder of this build.
set(headers ${PROJECT_BINARY_DIR}/foreign_headers)
file(MAKE_DIRECTORY ${headers})
foreach(entry fmt nlohmann)
  find_path(place ${entry} PATHS /usr/include /usr/local/include NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT place)
    message(FATAL_ERROR "No ${entry}: install libfmt-dev and nlohmann-json3-dev")
  endif()
  file(CREATE_LINK ${place}/${entry} ${headers}/${entry} SYMBOLIC)
  unset(place)
endforeach()
include_directories(SYSTEM ${headers})

# The compiler's runtime is copied beside the programs, where Windows searches first.
foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE "${file}")
    message(FATAL_ERROR "The compiler has no ${library}.dll")
  endif()
  file(COPY_FILE ${file} ${PROJECT_BINARY_DIR}/${library}.dll ONLY_IF_DIFFERENT)
endforeach()

# Programs of this build run under Wine, with a prefix in the build folder. Its drive Z: is the root of this system.
find_program(WINE NAMES wine64 wine-stable wine PATHS /usr/lib/wine)
mark_as_advanced(WINE)
if(WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/scripts/in_wine ${PROJECT_BINARY_DIR}/wine ${WINE})
else()
  message(STATUS "No Wine: the tests are built but cannot run here")
endif()
set(COMMONGROUND_DRIVE "Z:")
