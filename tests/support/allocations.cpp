#include "tests/support/allocations.h"

#include "tests/support/system_calls.h"

#include <cstdlib>
#include <new>

#if defined(__GLIBC__) && !defined(IS_SANITIZED)
#include <malloc.h>
#endif

namespace
{

thread_local long long t_Blocks = 0;
thread_local long long t_Bytes = 0;
thread_local long long t_Succeeding = 0;
thread_local int t_Failing = 0;

void* take(std::size_t size) noexcept
{
    if (t_Failing > 0 && t_Succeeding-- <= 0)
    {
        --t_Failing;
        return nullptr;
    }
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

FailingAllocations::FailingAllocations(long long succeeding, int failing)
{
    t_Succeeding = succeeding;
    t_Failing = failing;
}

FailingAllocations::~FailingAllocations()
{
    t_Failing = 0;
}

bool FailingAllocations::isOver() const
{
    return t_Failing == 0;
}

std::optional<long long> bytesInUse()
{
#if defined(__GLIBC__) && !defined(IS_SANITIZED)
    const auto info = mallinfo2();
    return static_cast<long long>(info.uordblks + info.hblkhd);
#else
    return std::nullopt;
#endif
}

} // namespace test
