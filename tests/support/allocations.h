// Counts allocations by operator new. On Windows the library's own calls are not counted, so tests assert upper bounds
// only.
#pragma once

#include <optional>

namespace test
{

// Blocks and bytes that this thread has allocated since construction; freed ones are not subtracted.
class AllocationCount
{
public:
    AllocationCount();
    long long blocks() const;
    long long bytes() const;

private:
    long long m_Blocks;
    long long m_Bytes;
};

// During its lifetime allocations of this thread fail: a number in a row, after a number that succeed. Only operator
// new fails, by std::bad_alloc or null; calls inside the library's DLL on Windows do not. What fails or skips a test
// allocates too, so ask isOver(), and skip when this is gone.
class FailingAllocations
{
public:
    FailingAllocations(long long succeeding, int failing);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    // Whether all of them have failed.
    bool isOver() const;
};

// Bytes allocated from the C library by this process. Empty if not available: with another C library, and under a
// sanitizer with its own allocator. A test that needs the figure then skips, after its other expectations.
std::optional<long long> bytesInUse();
constexpr const char* kNobodyTellsBytes = "the bytes in use are not available here";

} // namespace test
