// Checks in a fuzz target that memory is proportional to the bytes of the input.
#pragma once

#include <cstddef>

namespace fuzz
{

// During its lifetime, ends the process if this thread allocates a block larger than the input allows: four times the
// input plus 1 MiB, plus for each byte the objects that an honest list of the smallest elements creates from it.
class Budget
{
public:
    explicit Budget(size_t inputSize);
    ~Budget();
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;
};

} // namespace fuzz
