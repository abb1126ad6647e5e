// wirelens generate.
#include "tools/codec/codec_text.h"
#include "tools/schema_document.h"
#include "tools/wirelens/commands.h"

#include <iostream>

namespace wirelens
{

int generate(const std::string& language, const std::string& path)
{
    const auto document = path.empty() ? tools::schemaDocument() : readDocument(path);
    if (!document)
        return 1;
    const tools::Language in = language == "python"       ? tools::Language::kPython
                               : language == "typescript" ? tools::Language::kTypeScript
                                                          : tools::Language::kJavaScript;
    std::cout << tools::codecText(*document, in, WIRELENS_VERSION);
    return 0;
}

} // namespace wirelens
