#include "framework/format.h"

#include "framework/string.h"

#include <fmt/printf.h>

namespace zet
{

namespace
{

// One conversion of a pattern: %[flags][width][.precision][length]letter.
struct Conversion
{
    bool m_Left = false;
    bool m_Plus = false;
    bool m_Space = false;
    bool m_Alternate = false;
    bool m_Zero = false;
    int m_Width = 0;
    int m_Precision = -1;
    // Bytes that the length letters ask for; 0 leaves the argument's own.
    int m_Bytes = 0;
    char m_Letter = 0;
};

// Walks a pattern once and writes what it says. Every step returns false when the pattern does not fit.
template <class T>
class Formatter
{
public:
    using Arg = FormatArg<T>;

    Formatter(const T* pattern, const Arg* args, size_t count) : m_At(pattern), m_Args(args), m_Left(count) {}

    bool run()
    {
        while (*m_At)
        {
            const T* literal = m_At;
            while (*m_At && *m_At != T('%'))
                ++m_At;
            m_Out.append(literal, m_At);
            if (!*m_At)
                break;
            ++m_At;
            if (*m_At == T('%'))
            {
                m_Out.push_back(*m_At++);
                continue;
            }
            Conversion conversion;
            if (!parse(conversion) || !m_Left)
                return false;
            --m_Left;
            if (!put(conversion, *m_Args++))
                return false;
        }
        return true;
    }

    String_T<T> getText() const { return String_T<T>(m_Out.data(), static_cast<int>(m_Out.size())); }

private:
    // Widths above this are taken for a damaged argument of '*', not for a wish.
    static constexpr int kMaxWidth = 1 << 20;

    bool parse(Conversion& conversion)
    {
        for (;; ++m_At)
        {
            if (*m_At == T('-'))
                conversion.m_Left = true;
            else if (*m_At == T('+'))
                conversion.m_Plus = true;
            else if (*m_At == T(' '))
                conversion.m_Space = true;
            else if (*m_At == T('#'))
                conversion.m_Alternate = true;
            else if (*m_At == T('0'))
                conversion.m_Zero = true;
            else
                break;
        }
        if (!number(conversion.m_Width))
            return false;
        if (conversion.m_Width < 0)
        {
            conversion.m_Left = true;
            conversion.m_Width = -conversion.m_Width;
        }
        if (*m_At == T('.'))
        {
            ++m_At;
            conversion.m_Precision = 0;
            if (!number(conversion.m_Precision))
                return false;
        }
        length(conversion);
        if (*m_At <= T(' ') || *m_At > T('~'))
            return false;
        conversion.m_Letter = static_cast<char>(*m_At++);
        return true;
    }

    // Digits, or a '*' that takes the next argument.
    bool number(int& value)
    {
        if (*m_At == T('*'))
        {
            ++m_At;
            if (!m_Left)
                return false;
            const Arg& arg = *m_Args++;
            --m_Left;
            long long given = 0;
            if (!integerOf(arg, given) || given < -kMaxWidth || given > kMaxWidth)
                return false;
            value = static_cast<int>(given);
            return true;
        }
        for (; *m_At >= T('0') && *m_At <= T('9'); ++m_At)
        {
            value = value * 10 + static_cast<int>(*m_At - T('0'));
            if (value > kMaxWidth)
                return false;
        }
        return true;
    }

    // The letters narrow a number where they ask for less than 32 bits. They never cut a wider one: how wide a long is
    // differs between the platforms, and the argument says it better.
    void length(Conversion& conversion)
    {
        for (;; ++m_At)
        {
            if (*m_At == T('h'))
                conversion.m_Bytes = conversion.m_Bytes == 2 ? 1 : 2;
            else if (*m_At != T('l') && *m_At != T('j') && *m_At != T('z') && *m_At != T('t') && *m_At != T('L'))
                break;
        }
    }

    bool put(const Conversion& conversion, const Arg& arg)
    {
        switch (conversion.m_Letter)
        {
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            return putInteger(conversion, arg);
        case 'f':
        case 'F':
        case 'e':
        case 'E':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            return putFloat(conversion, arg);
        case 'c':
            return putUnit(conversion, arg);
        case 's':
            return putText(conversion, arg);
        case 'p':
            return putPointer(conversion, arg);
        default:
            return false;
        }
    }

    // The 64 bits of an integer argument, its sign spread through them.
    static bool integerOf(const Arg& arg, long long& value)
    {
        if (arg.m_Kind == Arg::kSigned)
            value = arg.m_Signed;
        else if (arg.m_Kind == Arg::kUnsigned)
            value = static_cast<long long>(arg.m_Unsigned);
        else
            return false;
        return true;
    }

    bool putInteger(const Conversion& conversion, const Arg& arg)
    {
        long long value = 0;
        bool isWide = arg.m_Width > 4;
        if (!integerOf(arg, value))
        {
            // Beyond 64 bits there is no number to show.
            if (arg.m_Kind != Arg::kFloat || !(arg.m_Float > -9.2e18 && arg.m_Float < 9.2e18))
                return false;
            value = static_cast<long long>(arg.m_Float);
            isWide = true;
        }
        const bool isSigned = conversion.m_Letter == 'd' || conversion.m_Letter == 'i';
        if (conversion.m_Bytes == 1)
            value = isSigned ? static_cast<signed char>(value) : static_cast<unsigned char>(value);
        else if (conversion.m_Bytes == 2)
            value = isSigned ? static_cast<short>(value) : static_cast<unsigned short>(value);
        if (isWide && isSigned)
            return putNumber(conversion, value);
        if (isWide)
            return putNumber(conversion, static_cast<unsigned long long>(value));
        if (isSigned)
            return putNumber(conversion, static_cast<int>(value));
        return putNumber(conversion, static_cast<unsigned int>(value));
    }

    bool putFloat(const Conversion& conversion, const Arg& arg)
    {
        if (arg.m_Kind == Arg::kFloat)
            return putNumber(conversion, arg.m_Float);
        if (arg.m_Kind == Arg::kSigned)
            return putNumber(conversion, static_cast<double>(arg.m_Signed));
        if (arg.m_Kind == Arg::kUnsigned)
            return putNumber(conversion, static_cast<double>(arg.m_Unsigned));
        return false;
    }

    bool putUnit(const Conversion& conversion, const Arg& arg)
    {
        long long value = 0;
        if (!integerOf(arg, value))
            return false;
        const T unit = static_cast<T>(value);
        putPadded(conversion, &unit, 1);
        return true;
    }

    bool putText(const Conversion& conversion, const Arg& arg)
    {
        if (arg.m_Kind != Arg::kText)
            return false;
        static constexpr T nothing[] = {T('('), T('n'), T('u'), T('l'), T('l'), T(')'), T()};
        const T* text = arg.m_Text ? arg.m_Text : nothing;
        size_t length = 0;
        // A precision is also a promise that no terminator stands behind it.
        while ((conversion.m_Precision < 0 || length < static_cast<size_t>(conversion.m_Precision)) && text[length])
            ++length;
        putPadded(conversion, text, length);
        return true;
    }

    bool putPointer(const Conversion& conversion, const Arg& arg)
    {
        const void* address = arg.m_Kind == Arg::kPointer ? arg.m_Pointer : arg.m_Text;
        if (arg.m_Kind != Arg::kPointer && arg.m_Kind != Arg::kText)
            return false;
        return putNumber(conversion, address);
    }

    void putPadded(const Conversion& conversion, const T* text, size_t length)
    {
        const size_t width = static_cast<size_t>(conversion.m_Width);
        const size_t padding = width > length ? width - length : 0;
        for (size_t i = 0; i < padding && !conversion.m_Left; ++i)
            m_Out.push_back(T(' '));
        m_Out.append(text, text + length);
        for (size_t i = 0; i < padding && conversion.m_Left; ++i)
            m_Out.push_back(T(' '));
    }

    // Gives one number with its conversion, written out again without length letters, to the formatting library.
    template <class V>
    bool putNumber(const Conversion& conversion, const V& value)
    {
        T pattern[40];
        int length = 0;
        pattern[length++] = T('%');
        if (conversion.m_Left)
            pattern[length++] = T('-');
        if (conversion.m_Plus)
            pattern[length++] = T('+');
        if (conversion.m_Space)
            pattern[length++] = T(' ');
        if (conversion.m_Alternate)
            pattern[length++] = T('#');
        if (conversion.m_Zero)
            pattern[length++] = T('0');
        if (conversion.m_Width)
            length = digits(pattern, length, conversion.m_Width);
        if (conversion.m_Precision >= 0)
        {
            pattern[length++] = T('.');
            length = digits(pattern, length, conversion.m_Precision);
        }
        pattern[length++] = static_cast<T>(conversion.m_Letter);
        using Context = fmt::basic_printf_context_t<T>;
        fmt::detail::vprintf(m_Out, fmt::basic_string_view<T>(pattern, static_cast<size_t>(length)),
                             fmt::basic_format_args<Context>(fmt::make_format_args<Context>(value)));
        return true;
    }

    static int digits(T* pattern, int length, int value)
    {
        const std::string text = std::to_string(value);
        for (const char digit : text)
            pattern[length++] = static_cast<T>(digit);
        return length;
    }

    const T* m_At;
    const Arg* m_Args;
    size_t m_Left;
    fmt::basic_memory_buffer<T> m_Out;
};

template <class T>
String_T<T> formatOrPattern(const T* pattern, const FormatArg<T>* args, size_t count)
{
    if (!pattern)
        return String_T<T>();
    try
    {
        Formatter<T> formatter(pattern, args, count);
        if (formatter.run())
            return formatter.getText();
    }
    catch (const std::exception&)
    {
        // What the formatting library refuses does not fit either.
    }
    return String_T<T>(pattern);
}

} // namespace

String_T<char> formatArgs(const char* pattern, const FormatArg<char>* args, size_t count)
{
    return formatOrPattern(pattern, args, count);
}

String_T<wchar_t> formatArgs(const wchar_t* pattern, const FormatArg<wchar_t>* args, size_t count)
{
    return formatOrPattern(pattern, args, count);
}

} // namespace zet
