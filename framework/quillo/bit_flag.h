// A word of flag bits.
#pragma once

namespace Quillo
{

class FBitFlag
{
public:
    FBitFlag() = default;
    explicit FBitFlag(unsigned long flags) : m_Flags(flags) {}

    // Whether any of the given bits is set.
    bool HasFlag(unsigned long flags) const { return (m_Flags & flags) != 0; }
    void SetFlag(unsigned long flags) { m_Flags |= flags; }
    void ClearFlag(unsigned long flags) { m_Flags &= ~flags; }

private:
    unsigned long m_Flags = 0;
};

} // namespace Quillo
