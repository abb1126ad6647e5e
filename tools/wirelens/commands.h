// The commands of wirelens; each returns the process's exit code: 0 good, 1 the input is bad, 2 misuse.
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

// One line to the standard error.
void warn(const wchar_t* line);

} // namespace wirelens
