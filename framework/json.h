// JSON values and their text.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <concepts>
#include <utility>
#include <variant>
#include <vector>

namespace zet
{

// A JSON value: null, a truth value, a number, a text, an array or an object. An object keeps its members in the order
// in which they came. A plain value, not locked; a deep copy costs what the document costs.
//
// What does not fit is no error: a value of another kind reads as 0, 0.0 or the empty text, and what is not there reads
// as null.
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
    // The empty value of a type.
    JsonValue(Type type);
    // A template, so that no pointer turns into a truth value.
    template <std::same_as<bool> T>
    JsonValue(T value) : m_Value(value)
    {
    }
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
    // The other value may lie inside this one.
    JsonValue& operator=(const JsonValue& other);
    JsonValue& operator=(JsonValue&& other) noexcept;
    ~JsonValue() = default;

    // Makes the value an array, or an object, where it is none, and the element or member where it is missing: elements
    // up to it as null, an index below 0 as 0. The reference holds until an element or a member is added beside it.
    JsonValue& operator[](int index);
    JsonValue& operator[](const wchar_t* name);
    // Null where there is no such element or member, or nothing that could have it.
    const JsonValue& operator[](int index) const;
    const JsonValue& operator[](const wchar_t* name) const;

    Type getType() const { return static_cast<Type>(m_Value.index()); }
    bool isNull() const { return getType() == kNull; }
    bool isArray() const { return getType() == kArray; }
    bool isObject() const { return getType() == kObject; }
    // Elements of an array, members of an object, else 0.
    int size() const;
    // Takes out all elements or members; any other value becomes null.
    void clear();
    void swap(JsonValue& other) noexcept { m_Value.swap(other.m_Value); }

    // A text, and nothing but a text.
    String_T<wchar_t> asString() const;
    // A number without its fraction, and 0 for one that the result cannot hold.
    int asInt32() const;
    unsigned long long asUInt64() const;
    // A number, and 0 for one that the result cannot hold.
    float asFloat() const;

private:
    friend class Json;
    using Array = std::vector<JsonValue>;
    using Object = std::vector<std::pair<String_T<wchar_t>, JsonValue>>;

    // In the order of Type.
    std::variant<std::monostate, bool, long long, unsigned long long, double, String_T<wchar_t>, Array, Object> m_Value;
};

class COMMONGROUND_API Json
{
public:
    // Arrays and objects inside one another that a text may have; a deeper one is refused.
    static constexpr int kMaxDepth = 64;

    // Takes one value off a text. Returns the place behind it, where anything may follow, or null when there is no
    // whole value; the value is null then. Of members with one name the last holds, at the place of the first.
    static const wchar_t* parseValue(const wchar_t* text, JsonValue& value);
    // The text of a value: in one line without blanks, or, with isPretty, a line for each element and member, indented
    // by four blanks a level. Characters stand as they are; only what JSON demands is escaped.
    static String_T<wchar_t> convertToString(const JsonValue& value, bool isPretty);

private:
    struct Builder;
    struct Printer;
};

} // namespace zet
