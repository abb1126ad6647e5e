# The manual page, the completion and the colours of wirelens.
add_test(NAME Wirelens.PagesAndCompletionHaveTheWholeGrammar
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/wirelens/check_pages.py $<TARGET_FILE:wirelens>
    ${PROJECT_BINARY_DIR}/wirelens_pages)
