# The change gate: what the classes of this tree break of a peer with those of the last release, whose document is in
# tests/release. A deliberate break is a new release: see CONTRIBUTING.md.
set(released ${PROJECT_SOURCE_DIR}/tests/release/schemas.json)
add_test(NAME Release.NoPeerOfTheLastReleaseBreaks COMMAND wirelens diff ${released})
# The gate finds what it is there for: another order of one class in a copy of the document.
add_test(NAME Release.AnotherOrderIsASentence
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/release/check_order.py $<TARGET_FILE:wirelens> ${released}
    ${PROJECT_BINARY_DIR}/release)
