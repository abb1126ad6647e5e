#include "framework/json.h"

#include "framework/string_helper.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string>

#include <nlohmann/json.hpp>

namespace zet
{

namespace
{

const JsonValue& nullValue()
{
    static const JsonValue value;
    return value;
}

// A text may contain zeros, but the helper stops at one: the parts between them are converted separately.
String_T<wchar_t> toWide(const std::string& text)
{
    String_T<wchar_t> wide = StringHelper::utf8ToWide(text.c_str());
    for (size_t zero = text.find('\0'); zero != std::string::npos; zero = text.find('\0', zero + 1))
    {
        wide += String_T<wchar_t>(L"", 1);
        wide += StringHelper::utf8ToWide(text.c_str() + zero + 1);
    }
    return wide;
}

std::string toUtf8(const String_T<wchar_t>& text)
{
    std::string narrow(StringHelper::wideToUtf8(text).view());
    for (int zero = text.find(0, 0); zero >= 0; zero = text.find(0, zero + 1))
    {
        narrow += '\0';
        narrow += StringHelper::wideToUtf8(text.getBuffer() + zero + 1).view();
    }
    return narrow;
}

// A number as another type, or 0 if it does not fit.
template <class To>
To narrowed(long long value)
{
    return std::in_range<To>(value) ? static_cast<To>(value) : To();
}

template <class To>
To narrowed(unsigned long long value)
{
    return std::in_range<To>(value) ? static_cast<To>(value) : To();
}

template <class To>
To narrowed(double value)
{
    const double whole = std::trunc(value);
    // The power of two above the greatest value is exact as a double; the greatest value itself may not be.
    const double behind = std::ldexp(1.0, std::numeric_limits<To>::digits);
    const double least = std::numeric_limits<To>::is_signed ? -behind : 0.0;
    return whole >= least && whole < behind ? static_cast<To>(whole) : To();
}

// The units of a text for the parser, which copies its iterators: the position is kept outside of them.
struct Source
{
    const wchar_t* m_At;
    // Whether the parser has tried to read past the end.
    bool m_IsAtEnd = false;
};

class Units
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = wchar_t;
    using difference_type = std::ptrdiff_t;
    using pointer = const wchar_t*;
    using reference = const wchar_t&;

    explicit Units(Source* source) : m_Source(source) {}

    reference operator*() const { return *m_Source->m_At; }
    Units& operator++()
    {
        ++m_Source->m_At;
        return *this;
    }
    // The parser only compares with the end.
    bool operator==(const Units&) const
    {
        m_Source->m_IsAtEnd = *m_Source->m_At == L'\0';
        return m_Source->m_IsAtEnd;
    }

private:
    Source* m_Source;
};

bool isLowSurrogate(wchar_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

JsonValue::JsonValue(Type type)
{
    switch (type)
    {
    case kNull:
        break;
    case kBool:
        m_Value = false;
        break;
    case kSigned:
        m_Value = 0LL;
        break;
    case kUnsigned:
        m_Value = 0ULL;
        break;
    case kFloat:
        m_Value = 0.0;
        break;
    case kString:
        m_Value = String_T<wchar_t>();
        break;
    case kArray:
        m_Value = Array();
        break;
    case kObject:
        m_Value = Object();
        break;
    }
}

JsonValue& JsonValue::operator=(const JsonValue& other)
{
    JsonValue copy(other);
    swap(copy);
    return *this;
}

JsonValue& JsonValue::operator=(JsonValue&& other) noexcept
{
    JsonValue taken(std::move(other));
    swap(taken);
    return *this;
}

JsonValue& JsonValue::operator[](int index)
{
    Array* array = std::get_if<Array>(&m_Value);
    if (!array)
        array = &m_Value.emplace<Array>();
    const size_t place = index > 0 ? static_cast<size_t>(index) : 0;
    if (place >= array->size())
        array->resize(place + 1);
    return (*array)[place];
}

JsonValue& JsonValue::operator[](const wchar_t* name)
{
    Object* object = std::get_if<Object>(&m_Value);
    if (!object)
        object = &m_Value.emplace<Object>();
    for (auto& [key, value] : *object)
        if (key == name)
            return value;
    return object->emplace_back(name, JsonValue()).second;
}

const JsonValue& JsonValue::operator[](int index) const
{
    const Array* array = std::get_if<Array>(&m_Value);
    return array && index >= 0 && static_cast<size_t>(index) < array->size() ? (*array)[static_cast<size_t>(index)]
                                                                             : nullValue();
}

const JsonValue& JsonValue::operator[](const wchar_t* name) const
{
    if (const Object* object = std::get_if<Object>(&m_Value))
        for (const auto& [key, value] : *object)
            if (key == name)
                return value;
    return nullValue();
}

int JsonValue::size() const
{
    if (const Array* array = std::get_if<Array>(&m_Value))
        return static_cast<int>(array->size());
    if (const Object* object = std::get_if<Object>(&m_Value))
        return static_cast<int>(object->size());
    return 0;
}

void JsonValue::clear()
{
    *this = JsonValue(isArray() || isObject() ? getType() : kNull);
}

String_T<wchar_t> JsonValue::asString() const
{
    const String_T<wchar_t>* text = std::get_if<String_T<wchar_t>>(&m_Value);
    return text ? *text : String_T<wchar_t>();
}

int JsonValue::asInt32() const
{
    if (const long long* value = std::get_if<long long>(&m_Value))
        return narrowed<int>(*value);
    if (const unsigned long long* value = std::get_if<unsigned long long>(&m_Value))
        return narrowed<int>(*value);
    if (const double* value = std::get_if<double>(&m_Value))
        return narrowed<int>(*value);
    return 0;
}

unsigned long long JsonValue::asUInt64() const
{
    if (const long long* value = std::get_if<long long>(&m_Value))
        return narrowed<unsigned long long>(*value);
    if (const unsigned long long* value = std::get_if<unsigned long long>(&m_Value))
        return *value;
    if (const double* value = std::get_if<double>(&m_Value))
        return narrowed<unsigned long long>(*value);
    return 0;
}

float JsonValue::asFloat() const
{
    if (const long long* value = std::get_if<long long>(&m_Value))
        return static_cast<float>(*value);
    if (const unsigned long long* value = std::get_if<unsigned long long>(&m_Value))
        return static_cast<float>(*value);
    if (const double* value = std::get_if<double>(&m_Value))
        return std::abs(*value) <= std::numeric_limits<float>::max() ? static_cast<float>(*value) : 0.0f;
    return 0.0f;
}

// Handles the parser's events. Members of an object are added without a search for their names, which would take
// quadratic time; duplicates are merged at the end of the object.
struct Json::Builder
{
    JsonValue& m_Root;
    // The open arrays and objects. Their addresses stay valid, since only the last one grows.
    std::vector<JsonValue*> m_Open;
    String_T<wchar_t> m_Name;

    explicit Builder(JsonValue& root) : m_Root(root) {}

    JsonValue& add(JsonValue&& value)
    {
        if (m_Open.empty())
            return m_Root = std::move(value);
        if (auto* array = std::get_if<JsonValue::Array>(&m_Open.back()->m_Value))
            return array->emplace_back(std::move(value));
        auto& object = std::get<JsonValue::Object>(m_Open.back()->m_Value);
        return object.emplace_back(std::move(m_Name), std::move(value)).second;
    }
    bool open(JsonValue::Type type)
    {
        if (m_Open.size() == kMaxDepth)
            return false;
        m_Open.push_back(&add(JsonValue(type)));
        return true;
    }

    static void joinMembers(JsonValue::Object& object)
    {
        std::vector<size_t> order(object.size());
        for (size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::sort(order.begin(), order.end(),
                  [&](size_t a, size_t b)
                  {
                      const bool isLess = object[a].first < object[b].first;
                      return isLess || (a < b && !(object[b].first < object[a].first));
                  });
        std::vector<bool> isLeft(object.size(), true);
        size_t first = 0;
        for (size_t i = 1; i < order.size(); ++i)
        {
            if (!(object[order[i]].first == object[order[first]].first))
            {
                first = i;
                continue;
            }
            object[order[first]].second = std::move(object[order[i]].second);
            isLeft[order[i]] = false;
        }
        size_t left = 0;
        for (size_t i = 0; i < object.size(); ++i)
        {
            if (!isLeft[i])
                continue;
            if (left != i)
                object[left] = std::move(object[i]);
            ++left;
        }
        object.resize(left);
    }

    // Names that the parser requires.
    bool null()
    {
        add(JsonValue());
        return true;
    }
    bool boolean(bool value)
    {
        add(JsonValue(value));
        return true;
    }
    bool number_integer(long long value)
    {
        add(JsonValue(value));
        return true;
    }
    bool number_unsigned(unsigned long long value)
    {
        add(JsonValue(value));
        return true;
    }
    bool number_float(double value, const std::string&)
    {
        add(JsonValue(value));
        return true;
    }
    bool string(const std::string& value)
    {
        add(JsonValue(toWide(value)));
        return true;
    }
    bool binary(const nlohmann::json::binary_t&) { return false; }
    bool start_object(size_t) { return open(JsonValue::kObject); }
    bool key(const std::string& name)
    {
        m_Name = toWide(name);
        return true;
    }
    bool end_object()
    {
        joinMembers(std::get<JsonValue::Object>(m_Open.back()->m_Value));
        m_Open.pop_back();
        return true;
    }
    bool start_array(size_t) { return open(JsonValue::kArray); }
    bool end_array()
    {
        m_Open.pop_back();
        return true;
    }
    bool parse_error(size_t, const std::string&, const nlohmann::json::exception&) { return false; }
};

struct Json::Printer
{
    std::string m_Text;
    bool m_IsPretty;

    explicit Printer(bool isPretty) : m_IsPretty(isPretty) {}

    void printScalar(const nlohmann::json& value)
    {
        m_Text += value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    void printEnd(size_t level)
    {
        if (!m_IsPretty)
            return;
        m_Text += '\n';
        m_Text.append(level * 4, ' ');
    }
    template <class Container, class Print>
    void printAll(const Container& container, char open, char close, size_t level, Print print)
    {
        m_Text += open;
        for (size_t i = 0; i < container.size(); ++i)
        {
            if (i > 0)
                m_Text += ',';
            printEnd(level + 1);
            print(container[i]);
        }
        if (!container.empty())
            printEnd(level);
        m_Text += close;
    }
    void print(const JsonValue& value, size_t level)
    {
        switch (value.getType())
        {
        case JsonValue::kNull:
            m_Text += "null";
            break;
        case JsonValue::kBool:
            m_Text += std::get<bool>(value.m_Value) ? "true" : "false";
            break;
        case JsonValue::kSigned:
            m_Text += std::to_string(std::get<long long>(value.m_Value));
            break;
        case JsonValue::kUnsigned:
            m_Text += std::to_string(std::get<unsigned long long>(value.m_Value));
            break;
        case JsonValue::kFloat:
            printScalar(std::get<double>(value.m_Value));
            break;
        case JsonValue::kString:
            printScalar(toUtf8(std::get<String_T<wchar_t>>(value.m_Value)));
            break;
        case JsonValue::kArray:
            printAll(std::get<JsonValue::Array>(value.m_Value), '[', ']', level,
                     [&](const JsonValue& element) { print(element, level + 1); });
            break;
        case JsonValue::kObject:
            printAll(std::get<JsonValue::Object>(value.m_Value), '{', '}', level,
                     [&](const auto& member)
                     {
                         printScalar(toUtf8(member.first));
                         m_Text += m_IsPretty ? ": " : ":";
                         print(member.second, level + 1);
                     });
            break;
        }
    }
};

const wchar_t* Json::parseValue(const wchar_t* text, JsonValue& value)
{
    JsonValue parsed;
    Builder builder(parsed);
    Source source{text ? text : L""};
    const bool isWhole = nlohmann::json::sax_parse(Units(&source), Units(&source), &builder,
                                                   nlohmann::json::input_format_t::json, false);
    const wchar_t* end = source.m_At;
    // Only a number is ended by reading the character after it.
    const JsonValue::Type type = parsed.getType();
    if (isWhole && type >= JsonValue::kSigned && type <= JsonValue::kFloat && !source.m_IsAtEnd)
        end -= isLowSurrogate(end[-1]) && sizeof(wchar_t) == 2 ? 2 : 1;
    if (!isWhole)
        parsed = JsonValue();
    value.swap(parsed);
    return isWhole ? end : nullptr;
}

String_T<wchar_t> Json::convertToString(const JsonValue& value, bool isPretty)
{
    Printer printer(isPretty);
    printer.print(value, 0);
    return toWide(printer.m_Text);
}

} // namespace zet
