// Counts what operator new gives out. On Windows the library's own calls do not come by here, so tests assert upper
// bounds only.
#pragma once

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

} // namespace test
