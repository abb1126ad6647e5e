#include "tests/support/places.h"

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

} // namespace test
