// Attributes and converters for C++ types.
#pragma once

#include "framework/property.h"

#include <utility>

namespace zet
{

// An attribute for a member. The texts must be literals.
template <auto Member>
class PropertyAttribute_T;

// The attribute of a member: getValue() is null for an object of another class.
template <class Class, class Value, Value Class::*Member>
class PropertyAttribute_T<Member> final : public IPropertyAttribute
{
public:
    // The three texts are not copied.
    PropertyAttribute_T(const wchar_t* name, const wchar_t* typeName, const wchar_t* description)
        : m_Name(name), m_TypeName(typeName), m_Description(description)
    {
    }

    const wchar_t* getName() const override { return m_Name; }
    const wchar_t* getTypeName() const override { return m_TypeName; }
    const wchar_t* getDescription() const override { return m_Description; }
    const std::type_info& getType() const override { return typeid(Value); }
    const void* getValue(const Property& object) const override
    {
        const Class* const owner = dynamic_cast<const Class*>(&object);
        return owner ? &(owner->*Member) : nullptr;
    }
    void* getValue(Property& object) const override
    {
        Class* const owner = dynamic_cast<Class*>(&object);
        return owner ? &(owner->*Member) : nullptr;
    }

private:
    const wchar_t* m_Name;
    const wchar_t* m_TypeName;
    const wchar_t* m_Description;
};

// The base of a converter of Value, which implements both directions.
template <class Value>
class PropertyConverter_T : public IPropertyConverter
{
public:
    // Sets json to the form of the value. False if the value has none.
    virtual bool toJson(const Value& value, JsonValue& json) const = 0;
    // Sets the value. False if the JSON does not match; the value is dropped then.
    virtual bool fromJson(const JsonValue& json, Value& value) const = 0;

    const std::type_info& getType() const override { return typeid(Value); }
    bool convertToJson(const void* value, JsonValue& json) const override
    {
        return toJson(*static_cast<const Value*>(value), json);
    }
    bool convertFromJson(const JsonValue& json, void* value) const override
    {
        // A partial match is refused.
        Value made;
        if (!fromJson(json, made))
            return false;
        *static_cast<Value*>(value) = std::move(made);
        return true;
    }
};

// A container of handles to objects of a class, such as std::vector<Unknown::Handle_T<NetMessage>>: a JSON array of
// whole objects. Objects of derived classes keep their class.
template <class Container>
class HandlesConverter_T final : public PropertyConverter_T<Container>
{
public:
    bool toJson(const Container& handles, JsonValue& json) const override
    {
        json = JsonValue(JsonValue::kArray);
        int index = 0;
        for (const auto& handle : handles)
            if (!PropertyHelper::convertPropertyToJson(handle.get(), json[index++]))
                return false;
        return true;
    }
    bool fromJson(const JsonValue& json, Container& handles) const override
    {
        if (!json.isArray())
            return false;
        for (int i = 0; i < json.size(); ++i)
        {
            Unknown::Handle_T<Property> object;
            if (!PropertyHelper::convertPropertyToClass(json[i], object))
                return false;
            using Class = std::remove_reference_t<decltype(*std::declval<typename Container::value_type>())>;
            Class* const element = dynamic_cast<Class*>(object.get());
            if (object && !element)
                return false;
            handles.emplace_back(element);
        }
        return true;
    }
};

// Registers a converter in PropertyFactory for its own lifetime.
template <class Converter>
class PropertyConverterRegistration
{
public:
    // typeName is not copied and must outlive the object, as a literal does.
    explicit PropertyConverterRegistration(const wchar_t* typeName) : m_TypeName(typeName)
    {
        PropertyFactory::setUpPropertyConverter(typeName, m_Converter);
    }
    ~PropertyConverterRegistration() { PropertyFactory::tearDownPropertyConverter(m_TypeName); }
    PropertyConverterRegistration(const PropertyConverterRegistration&) = delete;
    PropertyConverterRegistration& operator=(const PropertyConverterRegistration&) = delete;

private:
    const wchar_t* m_TypeName;
    Converter m_Converter;
};

} // namespace zet
