// JSON values and their text.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <concepts>
#include <utility>
#include <variant>
#include <vector>

namespace zet
{

// A JSON value: null, a boolean, a number, a text, an array or an object. An object keeps its members in the order in
// which they were added. A plain value, not locked; a copy copies the whole document.
//
// Reading as another type is not an error: it gives 0, 0.0 or the empty text, and a missing value reads as null. No
// function reads a boolean: only getType() and Json::convertToString() show it. A null name counts as the empty one.
class COMMONGROUND_API JsonValue
{
public:
    enum Type
    {
        kNull,
        kBool,
        kSigned,
        kUnsigned,
        kFloat,
        kString,
        kArray,
        kObject
    };

    JsonValue() = default;
    // The empty value of a type: false, 0, the empty text, an array or object without elements.
    JsonValue(Type type);
    // A template, so that no pointer converts to bool.
    template <std::same_as<bool> T>
    JsonValue(T value) : m_Value(value)
    {
    }
    // Values of the type of their argument: kSigned for int and long long, kUnsigned for the unsigned types, kFloat for
    // double, kString for text. A null pointer is the empty text.
    JsonValue(int value) : m_Value(static_cast<long long>(value)) {}
    JsonValue(unsigned int value) : m_Value(static_cast<unsigned long long>(value)) {}
    JsonValue(unsigned long value) : m_Value(static_cast<unsigned long long>(value)) {}
    JsonValue(long long value) : m_Value(value) {}
    JsonValue(unsigned long long value) : m_Value(value) {}
    JsonValue(double value) : m_Value(value) {}
    JsonValue(const wchar_t* text) : m_Value(String_T<wchar_t>(text)) {}
    JsonValue(String_T<wchar_t> text) : m_Value(std::move(text)) {}
    JsonValue(const JsonValue& other) = default;
    JsonValue(JsonValue&& other) noexcept = default;
    // The other value may be part of this one.
    JsonValue& operator=(const JsonValue& other);
    JsonValue& operator=(JsonValue&& other) noexcept;
    ~JsonValue() = default;

    // Converts the value to an array or an object if it is another type, and creates a missing element or member:
    // elements before it are null; an index below 0 counts as 0. The reference is valid until a sibling is added or
    // this value changes.
    JsonValue& operator[](int index);
    JsonValue& operator[](const wchar_t* name);
    // A null value if there is no such element or member, or if the value is of another type. Valid until this value
    // changes.
    const JsonValue& operator[](int index) const;
    const JsonValue& operator[](const wchar_t* name) const;

    // The type of the value.
    Type getType() const { return static_cast<Type>(m_Value.index()); }
    // Whether the value has the type in the name.
    bool isNull() const { return getType() == kNull; }
    bool isArray() const { return getType() == kArray; }
    bool isObject() const { return getType() == kObject; }
    // The number of elements of an array or members of an object, else 0.
    int size() const;
    // Removes all elements or members; any other value becomes null.
    void clear();
    // Exchanges the two values. Allocates nothing.
    void swap(JsonValue& other) noexcept { m_Value.swap(other.m_Value); }

    // The text, or the empty text for another type.
    String_T<wchar_t> asString() const;
    // The number without its fraction, or 0 if the result cannot hold it.
    int asInt32() const;
    unsigned long long asUInt64() const;
    // The number, or 0 if the result cannot hold it.
    float asFloat() const;

private:
    friend class Json;
    using Array = std::vector<JsonValue>;
    using Object = std::vector<std::pair<String_T<wchar_t>, JsonValue>>;

    // In the order of Type.
    std::variant<std::monostate, bool, long long, unsigned long long, double, String_T<wchar_t>, Array, Object> m_Value;
};

// Converts between values and their text. Any thread.
class COMMONGROUND_API Json
{
public:
    // The maximum nesting of arrays and objects in a text; deeper texts are refused.
    static constexpr int kMaxDepth = 64;

    // Parses one value from a text, after any white space. Returns the position after it, where anything may follow.
    // Returns null, and sets the value to null, if the text is null or has no complete value. Of several members with
    // one name the last value is kept, at the position of the first. An integer becomes kUnsigned, a negative one
    // kSigned; any other number, or one beyond 64 bits, kFloat.
    static const wchar_t* parseValue(const wchar_t* text, JsonValue& value);
    // The text of a value: one line without blanks, or, with isPretty, one line per element and member, indented by
    // four blanks per level. Only characters that JSON requires to be escaped are escaped. NaN and infinity become
    // null, an invalid unit of a text becomes U+FFFD.
    static String_T<wchar_t> convertToString(const JsonValue& value, bool isPretty);

private:
    struct Builder;
    struct Printer;
};

} // namespace zet
