#include "fuzz/support/budget.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace
{

// The largest object in relation to its bytes: an item of 20 bytes holds twelve texts.
constexpr size_t kObjectBytesPerByte = 64;
// Allowed for any input: a count of up to 1,024 is accepted even if no bytes follow, and the largest element of a list
// has less than 2 KiB.
constexpr size_t kTold = size_t{1024} * 2048;

thread_local size_t t_Limit = 0;

void* take(std::size_t size) noexcept
{
    if (t_Limit != 0 && size > t_Limit)
    {
        std::fprintf(stderr, "a block of %zu bytes, allowed are %zu\n", size, t_Limit);
        std::abort();
    }
    return std::malloc(size ? size : 1);
}

void* takeOrThrow(std::size_t size)
{
    if (void* block = take(size))
        return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return takeOrThrow(size);
}
void* operator new[](std::size_t size)
{
    return takeOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return take(size);
}
void operator delete(void* block) noexcept
{
    std::free(block);
}
void operator delete[](void* block) noexcept
{
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

namespace fuzz
{

Budget::Budget(size_t inputSize)
{
    t_Limit = (4 + kObjectBytesPerByte) * inputSize + kTold;
}

Budget::~Budget()
{
    t_Limit = 0;
}

} // namespace fuzz
