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

// Bytes of the C library's blocks that are in use by this process now. Nothing where nobody tells: in another C library
// and under a sanitizer that brings its own blocks. A test that needs them then skips, behind all else that it expects.
std::optional<long long> bytesInUse();
constexpr const char* kNobodyTellsBytes = "nobody tells the bytes in use here";

} // namespace test
