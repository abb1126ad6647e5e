// Counts what operator new gives out. On Windows the library's own calls do not come by here, so tests assert upper
// bounds only.
#pragma once

#include <optional>

namespace test
{

// Blocks and bytes that this thread took since the object was made; what was given back is not taken off.
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

// While it lives, allocations of this thread fail: so many in a row, behind so many that succeed. They fail in operator
// new alone, by std::bad_alloc or null as it promises, and not at all in what Windows' library calls by itself.
class FailingAllocations
{
public:
    FailingAllocations(long long succeeding, int failing);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    // Whether all of them have failed by now.
    bool isOver() const;
};

// Bytes of the C library's blocks that are in use by this process now. Nothing where nobody tells: in another C library
// and under a sanitizer that brings its own blocks. A test that needs them then skips, behind all else that it expects.
std::optional<long long> bytesInUse();
constexpr const char* kNobodyTellsBytes = "nobody tells the bytes in use here";

} // namespace test
