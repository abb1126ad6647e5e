// The protocol reference as one page of HTML.
#pragma once

#include <string>

namespace tools
{

// The whole page: page.html with its style, its script and the data of all classes inside it. It loads nothing else.
std::string pageText(const std::string& version);

} // namespace tools
