// The commands of wirelens. Each returns the exit code: 0 success, 1 bad input, 2 wrong usage.
#pragma once

#include <string>
#include <vector>

namespace wirelens
{

int catalogue(const std::vector<std::string>& arguments);
int schema(const std::string& className);
int makeNew(const std::string& className);
int read();
int explain(const std::string& className, const std::string& hex);
int decode(const std::vector<std::string>& arguments);

// Prints one line to the standard error.
void warn(const wchar_t* line);

} // namespace wirelens
