#include "tests/support/places.h"

#include <sstream>

namespace test
{

std::string getTestsFolder()
{
    return COMMONGROUND_TESTS_DIR;
}

std::string getBuildFolder()
{
    return COMMONGROUND_BUILD_DIR;
}

std::string getStarter()
{
    return COMMONGROUND_STARTER;
}

std::vector<std::string> getStartWords(const std::string& program)
{
    std::vector<std::string> words;
    std::istringstream starter(getStarter());
    for (std::string word; starter >> word;)
        words.push_back(word);
    words.push_back(getBuildFolder() + "/" + program);
    return words;
}

} // namespace test
