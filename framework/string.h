// The text type of the whole system: counted, zero-terminated, a plain value.
// Text of up to 11 units lives inside the object, so most names and all empty texts cost no allocation.
#pragma once

#include "framework/format.h"

#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

namespace zet
{

// A text of T units. Not shared, not locked: one object belongs to one thread at a time.
template <class T>
class String_T
{
public:
    // Units that fit inside the object, without the terminator.
    static constexpr int kInlineUnits = 11;

    // The empty text.
    String_T() noexcept { m_Inline[0] = T(); }
    // A copy of the text: up to its first zero, or of length units, zeros included. A null pointer gives the empty
    // text.
    String_T(const T* text) : String_T() { assign(text, lengthOf(text)); }
    String_T(const T* text, int length) : String_T() { assign(text, length); }
    // The decimal digits of a number.
    explicit String_T(int number) : String_T()
    {
        constexpr int kLongest = 11; // -2147483648
        T digits[kLongest];
        int first = kLongest;
        unsigned rest = static_cast<unsigned>(number);
        if (number < 0)
            rest = 0u - rest;
        do
            digits[--first] = static_cast<T>('0' + rest % 10);
        while ((rest /= 10) > 0);
        if (number < 0)
            digits[--first] = T('-');
        assign(digits + first, kLongest - first);
    }
    String_T(const String_T& other) : String_T() { assign(other.m_Text, other.m_Length); }
    String_T(String_T&& other) noexcept : String_T() { take(other); }
    ~String_T() { release(); }

    String_T& operator=(const String_T& other)
    {
        if (this != &other)
            assign(other.m_Text, other.m_Length);
        return *this;
    }
    String_T& operator=(String_T&& other) noexcept
    {
        if (this != &other)
        {
            clear();
            take(other);
        }
        return *this;
    }
    // Reads up to the first zero; a null pointer gives the empty text.
    String_T& operator=(const T* text)
    {
        assign(text, lengthOf(text));
        return *this;
    }

    // Units, without the terminator.
    int getLength() const { return m_Length; }
    // The longest length, in units, that needs no new allocation.
    int getCapacity() const { return m_Capacity; }
    // Whether the length is 0.
    bool isEmpty() const { return m_Length == 0; }
    // The text with its terminator; never null. Valid until the text changes.
    const T* getBuffer() const { return m_Text; }
    // The same as getLength().
    int getBufferLength() const { return m_Length; }
    // The same as getBuffer().
    operator const T*() const { return m_Text; }
    // The unit at an index from 0 to getLength(), where the terminator is. Not checked.
    T operator[](int index) const { return m_Text[index]; }
    // The text without its terminator. Valid until the text changes.
    std::basic_string_view<T> view() const { return {m_Text, static_cast<size_t>(m_Length)}; }

    // The index of the first unit of this value at or after from, or -1.
    int find(int unit, int from) const
    {
        for (int i = from < 0 ? 0 : from; i < m_Length; ++i)
            if (m_Text[i] == static_cast<T>(unit))
                return i;
        return -1;
    }

    // Up to count units that start at index from; fewer at the end of the text.
    String_T getSubString(int from, int count) const
    {
        if (from < 0)
            from = 0;
        if (from >= m_Length || count <= 0)
            return String_T();
        return String_T(m_Text + from, count < m_Length - from ? count : m_Length - from);
    }

    // Formats as printf does, by the rules of framework/format.h.
    template <class... Args>
    String_T& format(const T* pattern, const Args&... args)
    {
        *this = formatText(pattern, args...);
        return *this;
    }

    // Removes white space at both ends.
    String_T& trim()
    {
        int first = 0;
        int last = m_Length;
        while (first < last && isSpace(m_Text[first]))
            ++first;
        while (last > first && isSpace(m_Text[last - 1]))
            --last;
        *this = getSubString(first, last - first);
        return *this;
    }

    // Appends a text, which may be a part of this one; a null pointer appends nothing.
    String_T& operator+=(const String_T& other)
    {
        append(other.m_Text, other.m_Length);
        return *this;
    }
    String_T& operator+=(const T* text)
    {
        append(text, lengthOf(text));
        return *this;
    }
    // Both texts, one after the other.
    friend String_T operator+(const String_T& a, const String_T& b) { return String_T(a) += b; }
    friend String_T operator+(const String_T& a, const T* b) { return String_T(a) += b; }
    friend String_T operator+(const T* a, const String_T& b) { return String_T(a) += b; }

    // Whether the units are equal. A null pointer counts as the empty text.
    friend bool operator==(const String_T& a, const String_T& b) { return a.view() == b.view(); }
    friend bool operator==(const String_T& a, const T* b)
    {
        return a.view() == std::basic_string_view<T>(b ? b : emptyText());
    }
    // Wide texts are ordered by UTF-16 unit on every platform, whatever the width of wchar_t, so that a map is written
    // in one order everywhere.
    friend bool operator<(const String_T& a, const String_T& b) { return compareUnits(a.view(), b.view()) < 0; }
    friend bool operator<(const String_T& a, const T* b) { return compareUnits(a.view(), b ? b : emptyText()) < 0; }

    // Makes the text empty and frees its memory.
    void clear()
    {
        release();
        m_Text = m_Inline;
        m_Length = 0;
        m_Capacity = kInlineUnits;
        m_Inline[0] = T();
    }

    // Makes the text length units long and returns the place to write them; their values are undefined. The terminator
    // is already written. A negative length counts as 0.
    T* resizeForOverwrite(int length)
    {
        if (length < 0)
            length = 0;
        if (length > m_Capacity)
        {
            T* block = new T[static_cast<size_t>(length) + 1];
            release();
            m_Text = block;
            m_Capacity = length;
        }
        m_Length = length;
        m_Text[length] = T();
        return m_Text;
    }

    // Shortens the text to its first length units; a length above the present one changes nothing.
    void truncate(int length)
    {
        if (length < 0 || length >= m_Length)
            return;
        m_Length = length;
        m_Text[length] = T();
    }

    // Exchanges the two texts. Allocates nothing.
    void swap(String_T& other) noexcept
    {
        String_T mine(std::move(*this));
        take(other);
        other.take(mine);
    }

private:
    static const T* emptyText()
    {
        static constexpr T zero[1] = {};
        return zero;
    }
    static int lengthOf(const T* text) { return text ? static_cast<int>(std::char_traits<T>::length(text)) : 0; }
    static bool isSpace(T unit) { return unit == T(' ') || (unit >= T('\t') && unit <= T('\r')); }

    // The first UTF-16 unit of the code point that a unit of T holds.
    static unsigned long leadUnit(T unit)
    {
        const unsigned long value = static_cast<unsigned long>(static_cast<std::make_unsigned_t<T>>(unit));
        return value > 0xFFFF ? 0xD800 + ((value - 0x10000) >> 10) : value;
    }
    static int compareUnits(std::basic_string_view<T> a, std::basic_string_view<T> b)
    {
        const size_t common = a.size() < b.size() ? a.size() : b.size();
        for (size_t i = 0; i < common; ++i)
        {
            if (a[i] == b[i])
                continue;
            const unsigned long first = leadUnit(a[i]);
            const unsigned long second = leadUnit(b[i]);
            if (first != second)
                return first < second ? -1 : 1;
            return static_cast<std::make_unsigned_t<T>>(a[i]) < static_cast<std::make_unsigned_t<T>>(b[i]) ? -1 : 1;
        }
        return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
    }

    bool isInline() const { return m_Text == m_Inline; }
    void release()
    {
        if (!isInline())
            delete[] m_Text;
    }
    void assign(const T* text, int length)
    {
        if (text >= m_Text && text <= m_Text + m_Length && length > 0)
        {
            const String_T copy(text, length, 0);
            assign(copy.m_Text, length);
            return;
        }
        T* out = resizeForOverwrite(length);
        if (length > 0)
            std::memcpy(out, text, static_cast<size_t>(length) * sizeof(T));
    }
    // A copy that does not check whether the source lies inside this text.
    String_T(const T* text, int length, int) : String_T()
    {
        std::memcpy(resizeForOverwrite(length), text, static_cast<size_t>(length) * sizeof(T));
    }
    // Moves the text of other into this one, which is empty and inline; other is empty afterwards. Of the inline
    // storage only the units that have a value are touched.
    void take(String_T& other) noexcept
    {
        if (other.isInline())
        {
            std::memcpy(m_Inline, other.m_Inline, static_cast<size_t>(other.m_Length + 1) * sizeof(T));
        }
        else
        {
            m_Text = std::exchange(other.m_Text, other.m_Inline);
            m_Capacity = std::exchange(other.m_Capacity, kInlineUnits);
        }
        m_Length = std::exchange(other.m_Length, 0);
        other.m_Inline[0] = T();
    }
    void append(const T* text, int length)
    {
        if (length <= 0)
            return;
        const int old = m_Length;
        if (old + length > m_Capacity)
        {
            String_T grown;
            grown.resizeForOverwrite(old + length > 2 * m_Capacity ? old + length : 2 * m_Capacity);
            std::memcpy(grown.m_Text, m_Text, static_cast<size_t>(old) * sizeof(T));
            std::memcpy(grown.m_Text + old, text, static_cast<size_t>(length) * sizeof(T));
            swap(grown);
        }
        else
        {
            std::memmove(m_Text + old, text, static_cast<size_t>(length) * sizeof(T));
        }
        m_Length = old + length;
        m_Text[m_Length] = T();
    }

    T* m_Text = m_Inline;
    int m_Length = 0;
    int m_Capacity = kInlineUnits;
    T m_Inline[kInlineUnits + 1];
};

} // namespace zet
