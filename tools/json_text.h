// JSON as text, value by value. The text is what nlohmann's dump() prints; no tree is built for it.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace tools
{

// A line that grows. Memory is kept until the object ends, so one object serves many lines.
class JsonText
{
public:
    void clear() { m_Size = 0; }
    std::string_view view() const { return {m_Bytes.get(), m_Size}; }

    // As it is: punctuation, and names with their quotes.
    void put(char c)
    {
        *need(1) = c;
        ++m_Size;
    }
    void put(std::string_view text);

    void addBool(bool value) { put(value ? std::string_view("true") : std::string_view("false")); }
    void addInteger(long long value);
    // The number of floatJson(): NaN and infinity are null.
    void addFloat(float value);
    // Quoted and escaped; what is not a character is U+FFFD. The text ends at its first zero.
    void addText(const wchar_t* text);
    void addText(std::string_view utf8);
    // Quoted lower-case digits.
    void addHex(const void* data, size_t size);

private:
    // Space for this many bytes more.
    char* need(size_t more)
    {
        if (m_Capacity - m_Size < more)
            grow(more);
        return m_Bytes.get() + m_Size;
    }
    void grow(size_t more);
    void endAt(const char* end) { m_Size = static_cast<size_t>(end - m_Bytes.get()); }

    std::unique_ptr<char[]> m_Bytes;
    size_t m_Size = 0;
    size_t m_Capacity = 0;
};

} // namespace tools
