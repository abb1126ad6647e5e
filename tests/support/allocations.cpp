#include "tests/support/allocations.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local long long t_Blocks = 0;
thread_local long long t_Bytes = 0;

void* take(std::size_t size) noexcept
{
    ++t_Blocks;
    t_Bytes += static_cast<long long>(size);
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

namespace test
{

AllocationCount::AllocationCount() : m_Blocks(t_Blocks), m_Bytes(t_Bytes) {}

long long AllocationCount::blocks() const
{
    return t_Blocks - m_Blocks;
}

long long AllocationCount::bytes() const
{
    return t_Bytes - m_Bytes;
}

} // namespace test
