# A build for Windows on another system: where its headers and runtime come from, and what runs its programs.

# The headers of libraries that have nothing to link, as the packages of the building system carry them. The folder
# that they lie in also holds that system's own headers, so each is linked into a folder of this build's alone.
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

# The compiler's runtime lies beside the programs, where Windows looks first.
foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE "${file}")
    message(FATAL_ERROR "The compiler has no ${library}.dll")
  endif()
  file(COPY_FILE ${file} ${PROJECT_BINARY_DIR}/${library}.dll ONLY_IF_DIFFERENT)
endforeach()

# What runs a program of this build: Wine, with a prefix in the build folder. Its drive Z: is the root of this system.
find_program(WINE NAMES wine64 wine-stable wine PATHS /usr/lib/wine)
mark_as_advanced(WINE)
if(WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/scripts/in_wine ${PROJECT_BINARY_DIR}/wine ${WINE})
else()
  message(STATUS "No Wine: the tests are built and cannot run here")
endif()
set(COMMONGROUND_DRIVE "Z:")
