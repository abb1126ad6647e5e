// Objects whose fields have names: how they go to JSON and come back.
#pragma once

#include "framework/json.h"
#include "framework/unknown.h"

#include <typeinfo>
#include <vector>

namespace zet
{

class Property;

// How the values of one type go to JSON and come back. The value behind the pointer is of that type.
class COMMONGROUND_API IPropertyConverter
{
public:
    virtual ~IPropertyConverter();
    virtual const std::type_info& getType() const = 0;
    virtual bool convertToJson(const void* value, JsonValue& json) const = 0;
    // False where the JSON does not fit; the value is as it was then.
    virtual bool convertFromJson(const JsonValue& json, void* value) const = 0;
};

// One named field of a class.
class COMMONGROUND_API IPropertyAttribute
{
public:
    virtual ~IPropertyAttribute();
    virtual const wchar_t* getName() const = 0;
    // The name under which the converter of its type is registered.
    virtual const wchar_t* getTypeName() const = 0;
    virtual const wchar_t* getDescription() const = 0;
    virtual const std::type_info& getType() const = 0;
    // The field of an object, or null where the object has none of it.
    virtual const void* getValue(const Property& object) const = 0;
    virtual void* getValue(Property& object) const = 0;
};

// The attributes of a class, its bases' first. They are not owned and live as long as the program.
using PropertyAttributes = std::vector<const IPropertyAttribute*>;

// An object with named fields.
class COMMONGROUND_API Property : public virtual Unknown
{
public:
    // The name of the type among the types of fields: that of the class, for a class of objects.
    virtual const wchar_t* getPropertyType() const { return getClassName(); }
    // Every class with fields of its own says which; the base has none.
    virtual const PropertyAttributes& getPropertyAttributes() const;

    // Takes the fields that a JSON object has under their names; a field that is missing there, or null, stays as it
    // was, and names that are none of a field are passed over. False where the JSON is no object or a value does not
    // fit its field: the fields before that one are taken, that one and those behind it are as they were.
    bool importProperty(const JsonValue& json);
    // Makes json an object with all fields under their names. False where a field has no converter.
    bool exportProperty(JsonValue& json) const;
};

// One attribute of an object to JSON and back, by the registered converter of its type. False where there is none,
// where it is one of another type, or where the object has no such field or the JSON does not fit; a failed set leaves
// the object as it was.
COMMONGROUND_API bool PropertyAttribute_get(const Property& object, const IPropertyAttribute& attribute,
                                            JsonValue& json);
COMMONGROUND_API bool PropertyAttribute_set(Property& object, const IPropertyAttribute& attribute,
                                            const JsonValue& json);

// Fills the attribute tables of classes. Not locked: each class guards its own table.
struct COMMONGROUND_API PropertyAttributeHelper
{
    // False, and nothing changed, where the table has an attribute of that name.
    static bool registerPropertyAttribute(PropertyAttributes& table, const IPropertyAttribute& attribute);
    // Adds those of a base class whose names the table has not.
    static void mergePropertyAttribute(PropertyAttributes& table, const PropertyAttributes& base);
};

// The converters by the names of their types. Any thread. The names "zet::Uuid", "zet::UuidArray" and "zet::Buffer"
// are there from the start: lower-case hexadecimal digits, and an array of such texts.
struct COMMONGROUND_API PropertyFactory
{
    // Replaces what is registered under the name. The converter is not owned and stays until it is torn down.
    static void setUpPropertyConverter(const wchar_t* typeName, const IPropertyConverter& converter);
    static void tearDownPropertyConverter(const wchar_t* typeName);
    // Null where there is none.
    static const IPropertyConverter* getPropertyConverter(const wchar_t* typeName);
};

// Whole objects: {"class":"NetMessage","property":{...}}, and null for no object.
struct COMMONGROUND_API PropertyHelper
{
    // False where a field does not come out; json then has the fields before it.
    static bool convertPropertyToJson(const Property* object, JsonValue& json);
    // Makes the object by Unknown::RtFactory. False, and null, where the JSON has another form, names no registered
    // class of properties, or its fields do not fit.
    static bool convertPropertyToClass(const JsonValue& json, Unknown::Handle_T<Property>& object);
};

} // namespace zet
