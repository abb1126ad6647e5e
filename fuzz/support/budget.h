// Holds a fuzz target to the rule that memory follows the bytes that arrived.
#pragma once

#include <cstddef>

namespace fuzz
{

// Ends the process when one block that this thread asks for while it lives is larger than the bytes allow: four times
// the input and a mebibyte, and for each byte the objects that an honest list of the smallest elements makes of it.
class Budget
{
public:
    explicit Budget(size_t inputSize);
    ~Budget();
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;
};

} // namespace fuzz
