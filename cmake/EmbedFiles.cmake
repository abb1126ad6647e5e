# Writes a header with the text of files: OUTPUT, NAME of the array, FILES separated by |. Run by cmake -P.
set(text "#pragma once\n\nnamespace tools::embedded\n{\ninline constexpr const char* ${NAME}[] = {\n")
string(REPLACE "|" ";" FILES "${FILES}")
foreach(file ${FILES})
  file(READ ${file} content)
  string(APPEND text "R\"embedded(${content})embedded\",\n")
endforeach()
file(WRITE ${OUTPUT} "${text}};\n} // namespace tools::embedded\n")
