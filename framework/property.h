// Objects with named fields, and their conversion to and from JSON.
#pragma once

#include "framework/json.h"
#include "framework/unknown.h"

#include <typeinfo>
#include <vector>

namespace zet
{

class Property;

// Converts values of one type to and from JSON. The pointer refers to a value of that type.
class COMMONGROUND_API IPropertyConverter
{
public:
    virtual ~IPropertyConverter();
    // The type of the values.
    virtual const std::type_info& getType() const = 0;
    // Sets json to the form of the value. False if the value has none.
    virtual bool convertToJson(const void* value, JsonValue& json) const = 0;
    // False if the JSON does not match; the value is unchanged then.
    virtual bool convertFromJson(const JsonValue& json, void* value) const = 0;
};

// One named field of a class.
class COMMONGROUND_API IPropertyAttribute
{
public:
    virtual ~IPropertyAttribute();
    // The name of the field in JSON.
    virtual const wchar_t* getName() const = 0;
    // The name of its type's converter.
    virtual const wchar_t* getTypeName() const = 0;
    // A text for people; the library does not use it.
    virtual const wchar_t* getDescription() const = 0;
    // The type of the field.
    virtual const std::type_info& getType() const = 0;
    // The field of an object, or null if the object does not have it.
    virtual const void* getValue(const Property& object) const = 0;
    virtual void* getValue(Property& object) const = 0;
};

// The attributes of a class, those of its bases first. They are not owned and live until the program ends.
using PropertyAttributes = std::vector<const IPropertyAttribute*>;

// An object with named fields.
class COMMONGROUND_API Property : public virtual Unknown
{
public:
    // The type name for fields of this class: the class name.
    virtual const wchar_t* getPropertyType() const { return getClassName(); }
    // Each class with fields returns its attributes; the base has none.
    virtual const PropertyAttributes& getPropertyAttributes() const;

    // Sets the fields that a JSON object has by name; a missing or null field is unchanged, and unknown names are
    // ignored. False if the JSON is not an object or a value does not match its field: the fields before it are set,
    // that field and those after it are unchanged.
    bool importProperty(const JsonValue& json);
    // Sets json to an object with all fields by name. False if a field has no converter.
    bool exportProperty(JsonValue& json) const;
};

// Converts one attribute of an object to and from JSON by the registered converter of its type. False if there is no
// converter or one of another type, if the object does not have the field, or if the JSON does not match; a failed set
// leaves the object unchanged.
COMMONGROUND_API bool PropertyAttribute_get(const Property& object, const IPropertyAttribute& attribute,
                                            JsonValue& json);
COMMONGROUND_API bool PropertyAttribute_set(Property& object, const IPropertyAttribute& attribute,
                                            const JsonValue& json);

// Fills the attribute tables of classes. Not locked: each class protects its own table.
struct COMMONGROUND_API PropertyAttributeHelper
{
    // False, without a change, if the table already has an attribute of that name.
    static bool registerPropertyAttribute(PropertyAttributes& table, const IPropertyAttribute& attribute);
    // Adds the attributes of a base class whose names the table does not have.
    static void mergePropertyAttribute(PropertyAttributes& table, const PropertyAttributes& base);
};

// The converters by type name. Any thread. "zet::Uuid", "zet::UuidArray" and "zet::Buffer" are built in: lower-case
// hexadecimal digits, for "zet::UuidArray" an array of such texts.
struct COMMONGROUND_API PropertyFactory
{
    // Replaces a converter of the same name. The converter is not owned and must live until it is removed.
    static void setUpPropertyConverter(const wchar_t* typeName, const IPropertyConverter& converter);
    // Removes the converter of that name, if there is one.
    static void tearDownPropertyConverter(const wchar_t* typeName);
    // Null if there is none.
    static const IPropertyConverter* getPropertyConverter(const wchar_t* typeName);
};

// Whole objects: {"class":"NetMessage","property":{...}}, or null for a null pointer.
struct COMMONGROUND_API PropertyHelper
{
    // False if a field cannot be converted; json then has the fields before it.
    static bool convertPropertyToJson(const Property* object, JsonValue& json);
    // Creates the object by Unknown::RtFactory. False, and null, if the JSON has another form, does not name a
    // registered class with properties, or its fields do not match.
    static bool convertPropertyToClass(const JsonValue& json, Unknown::Handle_T<Property>& object);
};

} // namespace zet
