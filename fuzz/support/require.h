// What a fuzz target asserts.
#pragma once

#include <cstdlib>

namespace fuzz
{

// Ends the process where the fact does not hold, so that the fuzzer keeps the input.
inline void require(bool fact)
{
    if (!fact)
        std::abort();
}

} // namespace fuzz
