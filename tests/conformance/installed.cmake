# Installs the component "conformance" alone and runs it from there.
set(prefix ${BUILD}/conformance/installed)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --component conformance --prefix ${prefix}
  RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the component is not installed: ${result}")
endif()
file(GLOB_RECURSE found RELATIVE ${prefix}/${PLACE} ${prefix}/*)
list(SORT found)
if(NOT found STREQUAL "conformance;vectors.jsonl;wire.md")
  message(FATAL_ERROR "installed: ${found}")
endif()
execute_process(COMMAND ${PYTHON} ${prefix}/${PLACE}/conformance --width 32 --class CCmdServerEcho
  ${prefix}/${PLACE}/vectors.jsonl -- ${WIRELENS} read RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the vectors of a class fail: ${result}")
endif()
