// Assertions of fuzz targets.
#pragma once

#include <cstdlib>

namespace fuzz
{

// Ends the process if the condition is false, so that the fuzzer keeps the input.
inline void require(bool fact)
{
    if (!fact)
        std::abort();
}

} // namespace fuzz
