# The codecs that wirelens generates read and write all golden vectors, as hosts with either width of text do.
# After cmake/Conformance.cmake.
set(generated ${PROJECT_BINARY_DIR}/codec)
# Beside the module that it imports.
configure_file(${PROJECT_SOURCE_DIR}/tests/codec/typed.ts ${generated}/typed.ts COPYONLY)
set(commands COMMAND ${CMAKE_COMMAND} -E make_directory ${generated})
foreach(codec "python codec.py" "typescript codec.ts" "javascript codec.mjs")
  separate_arguments(codec)
  list(GET codec 0 language)
  list(GET codec 1 file)
  list(APPEND commands COMMAND wirelens generate ${language} > ${generated}/${file})
endforeach()
add_custom_command(OUTPUT ${generated}/codec.py ${generated}/codec.ts ${generated}/codec.mjs ${commands}
  DEPENDS wirelens COMMENT "Generating the codecs" VERBATIM)
add_custom_target(codecs ALL DEPENDS ${generated}/codec.py)

find_program(COMMONGROUND_NODE NAMES node nodejs)
find_program(COMMONGROUND_TSC tsc)
mark_as_advanced(COMMONGROUND_NODE COMMONGROUND_TSC)
set(places ${PROJECT_SOURCE_DIR}/tests/codec)
foreach(width 16 32)
  add_test(NAME Codec.PythonPassesAllVectorsAt${width}Bits
    COMMAND ${conformance} --width ${width} ${vectors} -- ${Python3_EXECUTABLE} ${places}/conformance.py
      ${generated}/codec.py ${width})
  if(COMMONGROUND_NODE)
    add_test(NAME Codec.JavaScriptPassesAllVectorsAt${width}Bits
      COMMAND ${conformance} --width ${width} ${vectors} -- ${COMMONGROUND_NODE} ${places}/conformance.mjs
        ${generated}/codec.mjs ${width})
  endif()
endforeach()
add_test(NAME Codec.PythonFramesCommands COMMAND Python3::Interpreter ${places}/frames.py ${generated}/codec.py)
if(COMMONGROUND_NODE)
  add_test(NAME Codec.JavaScriptFramesCommands
    COMMAND ${COMMONGROUND_NODE} ${places}/frames.mjs ${generated}/codec.mjs)
else()
  message(STATUS "The tests of the generated JavaScript are left out: no node")
endif()
# The TypeScript and the JavaScript are one text, with and without what only TypeScript has. A compiler checks the types
# where there is one.
if(COMMONGROUND_TSC)
  add_test(NAME Codec.TypeScriptHasNoTypeErrors
    COMMAND ${COMMONGROUND_TSC} --noEmit --strict --noUncheckedIndexedAccess --target es2022 --module es2022
      ${generated}/typed.ts)
endif()
