// A word of flag bits.
#pragma once

namespace Quillo
{

// A word of flag bits: a plain value.
class FBitFlag
{
public:
    FBitFlag() = default;
    // With these bits set.
    explicit FBitFlag(unsigned long flags) : m_Flags(flags) {}

    // Whether any of the given bits is set.
    bool HasFlag(unsigned long flags) const { return (m_Flags & flags) != 0; }
    // Sets the given bits, or clears them; the others stay.
    void SetFlag(unsigned long flags) { m_Flags |= flags; }
    void ClearFlag(unsigned long flags) { m_Flags &= ~flags; }

private:
    unsigned long m_Flags = 0;
};

} // namespace Quillo
