#include "framework/property.h"

#include <algorithm>

namespace zet
{

namespace
{

// The form of a whole object.
constexpr const wchar_t* kClassKey = L"class";
constexpr const wchar_t* kPropertyKey = L"property";

const IPropertyConverter* converterOf(const IPropertyAttribute& attribute)
{
    const IPropertyConverter* const converter = PropertyFactory::getPropertyConverter(attribute.getTypeName());
    return converter && converter->getType() == attribute.getType() ? converter : nullptr;
}

} // namespace

IPropertyConverter::~IPropertyConverter() = default;
IPropertyAttribute::~IPropertyAttribute() = default;

const PropertyAttributes& Property::getPropertyAttributes() const
{
    static const PropertyAttributes none;
    return none;
}

bool Property::importProperty(const JsonValue& json)
{
    if (!json.isObject())
        return false;
    for (const IPropertyAttribute* attribute : getPropertyAttributes())
    {
        const JsonValue& value = json[attribute->getName()];
        if (!value.isNull() && !PropertyAttribute_set(*this, *attribute, value))
            return false;
    }
    return true;
}

bool Property::exportProperty(JsonValue& json) const
{
    json = JsonValue(JsonValue::kObject);
    for (const IPropertyAttribute* attribute : getPropertyAttributes())
        if (!PropertyAttribute_get(*this, *attribute, json[attribute->getName()]))
            return false;
    return true;
}

bool PropertyAttribute_get(const Property& object, const IPropertyAttribute& attribute, JsonValue& json)
{
    const IPropertyConverter* const converter = converterOf(attribute);
    const void* const value = attribute.getValue(object);
    return converter && value && converter->convertToJson(value, json);
}

bool PropertyAttribute_set(Property& object, const IPropertyAttribute& attribute, const JsonValue& json)
{
    const IPropertyConverter* const converter = converterOf(attribute);
    void* const value = attribute.getValue(object);
    return converter && value && converter->convertFromJson(json, value);
}

bool PropertyAttributeHelper::registerPropertyAttribute(PropertyAttributes& table, const IPropertyAttribute& attribute)
{
    const String_T<wchar_t> name = attribute.getName();
    if (std::any_of(table.begin(), table.end(),
                    [&](const IPropertyAttribute* other) { return name == other->getName(); }))
        return false;
    table.push_back(&attribute);
    return true;
}

void PropertyAttributeHelper::mergePropertyAttribute(PropertyAttributes& table, const PropertyAttributes& base)
{
    for (const IPropertyAttribute* attribute : base)
        registerPropertyAttribute(table, *attribute);
}

bool PropertyHelper::convertPropertyToJson(const Property* object, JsonValue& json)
{
    json = JsonValue();
    if (!object)
        return true;
    json[kClassKey] = JsonValue(object->getClassName());
    return object->exportProperty(json[kPropertyKey]);
}

bool PropertyHelper::convertPropertyToClass(const JsonValue& json, Unknown::Handle_T<Property>& object)
{
    object.clear();
    if (json.isNull())
        return true;
    const Unknown::Handle_T<Unknown> made = Unknown::RtFactory::create(json[kClassKey].asString());
    const Unknown::Handle_T<Property> property = made.castTo<Property>();
    if (!property || !property->importProperty(json[kPropertyKey]))
        return false;
    object = property;
    return true;
}

} // namespace zet
