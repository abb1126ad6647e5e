// The comments of classes and their members, as the headers have them.
#pragma once

#include <string>

namespace tools
{

// The comment before a class, in one line: who sends it and what answers. Empty if there is none.
std::string commentOf(const std::string& className);
// The comment before a member of the class, or after it on its line.
std::string commentOf(const std::string& className, const std::string& member);

} // namespace tools
