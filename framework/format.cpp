#include "framework/format.h"

#include "framework/string.h"

#include <fmt/printf.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

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
    // Bytes that the length letters name; 0 for the argument's own width.
    int m_Bytes = 0;
    char m_Letter = 0;
};

// Walks a pattern once and writes its text. Every step returns false if the pattern does not match the arguments.
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
    // A greater width is assumed to be a corrupt argument of '*'.
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

    // Letters for less than 32 bits narrow a number. Others never narrow it: the width of long differs between
    // platforms, and the argument's own width is known.
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

    // An integer argument sign-extended to 64 bits.
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
            // Wider than 64 bits: not a number that can be shown.
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
        if (!isWide && isSigned)
            value = static_cast<int>(value);
        else if (!isWide)
            value = static_cast<unsigned int>(value);
        return putDigits(conversion, isSigned, value);
    }

    // Sign, base prefix, zeros up to the precision and digits, by the rules of C: '+' and ' ' apply to signed
    // conversions only, a precision disables '0', and with precision 0 the number 0 has no digits.
    bool putDigits(const Conversion& conversion, bool isSigned, long long value)
    {
        const bool isNegative = isSigned && value < 0;
        unsigned long long rest = static_cast<unsigned long long>(value);
        rest = isNegative ? 0 - rest : rest;
        const char letter = conversion.m_Letter;
        const bool isHex = letter == 'x' || letter == 'X';
        const unsigned int base = isHex ? 16 : letter == 'o' ? 8 : 10;
        const char* const digits = letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
        // At most 22 octal digits.
        char text[24];
        char* const end = text + sizeof text;
        char* first = end;
        for (; rest; rest /= base)
            *--first = digits[rest % base];
        size_t zeros = conversion.m_Precision < 0 ? (first == end ? 1 : 0) : 0;
        const size_t length = static_cast<size_t>(end - first);
        if (conversion.m_Precision > 0 && static_cast<size_t>(conversion.m_Precision) > length)
            zeros = static_cast<size_t>(conversion.m_Precision) - length;
        if (conversion.m_Alternate && letter == 'o' && zeros == 0)
            zeros = 1;
        std::string prefix = signOf(conversion, isSigned, isNegative);
        if (conversion.m_Alternate && isHex && value != 0)
            prefix += letter == 'X' ? "0X" : "0x";
        putFilled(conversion, prefix, zeros, std::string_view(first, length), conversion.m_Precision < 0);
        return true;
    }

    static std::string signOf(const Conversion& conversion, bool isSigned, bool isNegative)
    {
        if (isNegative)
            return "-";
        return !isSigned ? "" : conversion.m_Plus ? "+" : conversion.m_Space ? " " : "";
    }

    // Writes the parts of a number, padded to the width by blanks on one side or by zeros after the prefix.
    void putFilled(const Conversion& conversion, std::string_view prefix, size_t zeros, std::string_view digits,
                   bool takesZeros)
    {
        const size_t length = prefix.size() + zeros + digits.size();
        const size_t width = static_cast<size_t>(conversion.m_Width);
        const size_t padding = width > length ? width - length : 0;
        if (conversion.m_Zero && takesZeros && !conversion.m_Left)
            zeros += padding;
        else if (!conversion.m_Left)
            put(T(' '), padding);
        put(prefix);
        put(T('0'), zeros);
        put(digits);
        if (conversion.m_Left)
            put(T(' '), padding);
    }

    void put(T unit, size_t count)
    {
        for (size_t i = 0; i < count; ++i)
            m_Out.push_back(unit);
    }

    void put(std::string_view text)
    {
        for (const char c : text)
            m_Out.push_back(static_cast<T>(c));
    }

    bool putFloat(const Conversion& conversion, const Arg& arg)
    {
        const double value = arg.m_Kind == Arg::kFloat      ? arg.m_Float
                             : arg.m_Kind == Arg::kSigned   ? static_cast<double>(arg.m_Signed)
                             : arg.m_Kind == Arg::kUnsigned ? static_cast<double>(arg.m_Unsigned)
                                                            : 0.0;
        if (arg.m_Kind == Arg::kText || arg.m_Kind == Arg::kPointer)
            return false;
        const std::string text = digitsOf(conversion, std::abs(value));
        std::string prefix = signOf(conversion, true, std::signbit(value));
        std::string_view digits = text;
        if (conversion.m_Letter == 'a' || conversion.m_Letter == 'A')
        {
            const size_t base = std::isfinite(value) ? 2 : 0;
            prefix += digits.substr(0, base);
            digits.remove_prefix(base);
        }
        putFilled(conversion, prefix, 0, digits, std::isfinite(value));
        return true;
    }

    // A non-negative number, without sign and padding.
    static std::string digitsOf(const Conversion& conversion, double value)
    {
        const bool isGeneral = conversion.m_Letter == 'g' || conversion.m_Letter == 'G';
        if (isGeneral && conversion.m_Alternate && std::isfinite(value))
            return significantDigitsOf(conversion, value);
        std::string pattern = conversion.m_Alternate ? "%#" : "%";
        if (conversion.m_Precision >= 0)
            pattern.append(1, '.').append(std::to_string(conversion.m_Precision));
        pattern += conversion.m_Letter;
        return fmt::sprintf(pattern, value);
    }

    // "%#g": the formatting library removes trailing zeros that C keeps. Writes as many digits as the precision names,
    // with an exponent if the number is too large or too small for them.
    static std::string significantDigitsOf(const Conversion& conversion, double value)
    {
        const int digits = conversion.m_Precision < 0 ? 6 : std::max(conversion.m_Precision, 1);
        const char letter = conversion.m_Letter == 'g' ? 'e' : 'E';
        const std::string scientific = fmt::sprintf("%#." + std::to_string(digits - 1) + letter, value);
        const int exponent = std::stoi(scientific.substr(scientific.find(letter) + 1));
        if (exponent < -4 || exponent >= digits)
            return scientific;
        return fmt::sprintf("%#." + std::to_string(digits - 1 - exponent) + "f", value);
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
        // With a precision the text need not have a terminator.
        while ((conversion.m_Precision < 0 || length < static_cast<size_t>(conversion.m_Precision)) && text[length])
            ++length;
        putPadded(conversion, text, length);
        return true;
    }

    bool putPointer(const Conversion& conversion, const Arg& arg)
    {
        if (arg.m_Kind != Arg::kPointer && arg.m_Kind != Arg::kText)
            return false;
        const void* address = arg.m_Kind == Arg::kPointer ? arg.m_Pointer : arg.m_Text;
        putFilled(conversion, "", 0, address ? fmt::sprintf("%p", address) : "(nil)", false);
        return true;
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
        // The formatting library has refused the pattern: it does not match.
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
