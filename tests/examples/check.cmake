# Runs an example and compares what it prints with the file output.txt of its folder. An example with a script
# make_certificates gets the folder that the script fills as its argument.
# cmake -DPROGRAM=... -DEXAMPLE=<folder of its source> -DPLACE=<folder for its files> -P check.cmake
set(arguments)
if(EXISTS ${EXAMPLE}/make_certificates)
  execute_process(COMMAND ${EXAMPLE}/make_certificates ${PLACE} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET ERROR_QUIET)
  set(arguments ${PLACE})
endif()
execute_process(COMMAND ${PROGRAM} ${arguments} TIMEOUT 60 RESULT_VARIABLE result OUTPUT_VARIABLE output
  ERROR_VARIABLE errors)
file(READ ${EXAMPLE}/output.txt expected)
if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} ends with ${result} and prints:\n${output}\nnot:\n${expected}\nIts log:\n${errors}")
endif()
