#include "framework/uuid.h"

#include "framework/platform/platform.h"

namespace zet
{

int uuid_node_t::compare(const uuid_node_t& other) const
{
    for (int i = 0; i < 3; ++i)
        if (m_Node[i] != other.m_Node[i])
            return m_Node[i] < other.m_Node[i] ? -1 : 1;
    return 0;
}

String_T<wchar_t> uuid_node_t::convertToString() const
{
    static constexpr wchar_t kDigits[] = L"0123456789abcdef";
    unsigned char bytes[sizeof m_Node];
    std::memcpy(bytes, m_Node, sizeof bytes);
    String_T<wchar_t> text;
    wchar_t* out = text.resizeForOverwrite(2 * static_cast<int>(sizeof bytes));
    for (const unsigned char byte : bytes)
    {
        *out++ = kDigits[byte >> 4];
        *out++ = kDigits[byte & 15];
    }
    return text;
}

int uuid_create(Uuid& id)
{
    // All zero means none and is never returned.
    do
    {
        if (!platform::fillRandom(&id, sizeof id))
            return -1;
    } while (id.isNull());
    return 0;
}

int uuid_compare(const Uuid& a, const Uuid& b)
{
    const int order = std::memcmp(&a, &b, sizeof a);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace zet
