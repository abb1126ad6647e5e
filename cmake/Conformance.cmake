# The golden vectors as lines of JSON and the script that checks a program against them: the installation component
# "conformance", which is not part of a whole installation. cmake --install BUILD --component conformance --prefix PLACE
add_executable(golden_vectors ${PROJECT_SOURCE_DIR}/tests/conformance/vectors.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/golden.cpp)
target_link_libraries(golden_vectors PRIVATE commonground commonground_tools commonground_warnings)
target_precompile_headers(golden_vectors PRIVATE <cmake/std_pch.h>)

set(vectors ${PROJECT_BINARY_DIR}/conformance/vectors.jsonl)
file(GLOB_RECURSE golden CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/golden/*.golden)
add_custom_command(OUTPUT ${vectors}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/conformance
  COMMAND golden_vectors ${PROJECT_SOURCE_DIR}/tests/golden > ${vectors}
  DEPENDS golden_vectors ${golden} COMMENT "Writing the golden vectors as JSON" VERBATIM)
add_custom_target(conformance ALL DEPENDS ${vectors})

set(place ${CMAKE_INSTALL_DATADIR}/commonground/conformance)
install(FILES ${vectors} DESTINATION ${place} COMPONENT conformance EXCLUDE_FROM_ALL)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/scripts/conformance DESTINATION ${place} COMPONENT conformance EXCLUDE_FROM_ALL)
install(FILES ${PROJECT_SOURCE_DIR}/docs/wire.md DESTINATION ${place} COMPONENT conformance EXCLUDE_FROM_ALL)

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(conformance Python3::Interpreter ${PROJECT_SOURCE_DIR}/scripts/conformance)
add_test(NAME Conformance.SelfTest COMMAND ${conformance} --self-test)
# The width of this build's wide characters.
add_test(NAME Conformance.WirelensPasses COMMAND ${conformance} --width 32 ${vectors} -- $<TARGET_FILE:wirelens> read)
# The bytes of one width are not those of the other.
add_test(NAME Conformance.AnotherWidthFails
  COMMAND ${conformance} --width 16 ${vectors} -- $<TARGET_FILE:wirelens> read)
set_tests_properties(Conformance.AnotherWidthFails PROPERTIES WILL_FAIL TRUE)
if(COMMONGROUND_OTHER_PROGRAMS)
  # What wirelens dissector prints, run by tshark on captures of these vectors.
  add_test(NAME Conformance.DissectorAgreesWithDecode
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/dissector/check_dissector.py $<TARGET_FILE:wirelens> ${vectors})
  set_tests_properties(Conformance.DissectorAgreesWithDecode PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 600)
  # A capture of any size takes the same memory.
  if(TARGET PkgConfig::pcap)
    add_test(NAME Conformance.DecodeTakesBoundedMemory
      COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/wirelens/check_memory.py $<TARGET_FILE:wirelens> ${vectors})
  endif()
  # What wirelens docs prints, used in a headless browser.
  add_test(NAME Conformance.PageWorksInABrowser
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/docs/check_page.py $<TARGET_FILE:wirelens>)
  set_tests_properties(Conformance.PageWorksInABrowser PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()
# From an installation, where nothing else of this tree is.
add_test(NAME Conformance.InstalledPackageRuns
  COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DPYTHON=${Python3_EXECUTABLE} -DPLACE=${place}
    -DWIRELENS=$<TARGET_FILE:wirelens> -P ${PROJECT_SOURCE_DIR}/tests/conformance/installed.cmake)
# decode, then encode, gives the same bytes.
add_test(NAME Conformance.EncodeGivesTheBytesBack
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/conformance/round_trip.py ${vectors} $<TARGET_FILE:wirelens>)
