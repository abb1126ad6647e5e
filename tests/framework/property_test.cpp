#include "framework/property.h"

#include "framework/buffer.h"
#include "framework/class_id.h"
#include "framework/member_table.h"
#include "framework/memory_stream.h"
#include "framework/property_types.h"

#include <gtest/gtest.h>

#include <cstring>
#include <list>

namespace
{

using zet::Json;
using zet::JsonValue;
using zet::Property;
using zet::PropertyAttributeHelper;
using zet::PropertyAttributes;
using zet::PropertyFactory;
using zet::PropertyHelper;
using Text = zet::String_T<wchar_t>;

// A part of a property class, with a name that no class of the library has.
class Point : public Property
{
public:
    static PropertyAttributes makeTable()
    {
        static const zet::PropertyAttribute_T<&Point::m_Id> id(L"id", L"zet::Uuid", L"The point's own.");
        static const zet::PropertyAttribute_T<&Point::m_Bytes> bytes(L"bytes", L"zet::Buffer", L"");
        PropertyAttributes table;
        EXPECT_TRUE(PropertyAttributeHelper::registerPropertyAttribute(table, id));
        EXPECT_TRUE(PropertyAttributeHelper::registerPropertyAttribute(table, bytes));
        return table;
    }
    const PropertyAttributes& getPropertyAttributes() const override
    {
        static const PropertyAttributes table = makeTable();
        return table;
    }
    const wchar_t* getClassName() const override { return L"TestPoint"; }

    zet::Uuid m_Id;
    zet::Buffer m_Bytes;
};

using PointArray = std::vector<zet::Unknown::Handle_T<Point>>;
using PointList = std::list<zet::Unknown::Handle_T<Point>>;

// Derived: the table of the base, and lists of objects.
class Shape : public Point
{
public:
    const PropertyAttributes& getPropertyAttributes() const override
    {
        static const PropertyAttributes table = []
        {
            static const zet::PropertyAttribute_T<&Shape::m_Points> points(L"points", L"TestPointArray", L"");
            static const zet::PropertyAttribute_T<&Shape::m_Marks> marks(L"marks", L"TestPointList", L"");
            PropertyAttributes own;
            PropertyAttributeHelper::mergePropertyAttribute(own, Point::makeTable());
            PropertyAttributeHelper::registerPropertyAttribute(own, points);
            PropertyAttributeHelper::registerPropertyAttribute(own, marks);
            return own;
        }();
        return table;
    }
    const wchar_t* getClassName() const override { return L"TestShape"; }

    PointArray m_Points;
    PointList m_Marks;
};

template <class Class>
zet::Unknown* make()
{
    return new Class;
}

struct Registered
{
    zet::RtRegistration m_Point{L"TestPoint", &make<Point>};
    zet::RtRegistration m_Shape{L"TestShape", &make<Shape>};
    zet::PropertyConverterRegistration<zet::HandlesConverter_T<PointArray>> m_Array{L"TestPointArray"};
    zet::PropertyConverterRegistration<zet::HandlesConverter_T<PointList>> m_List{L"TestPointList"};
};

JsonValue parsed(const wchar_t* text)
{
    JsonValue value;
    EXPECT_NE(Json::parseValue(text, value), nullptr);
    return value;
}

Text exported(const Property& object)
{
    JsonValue value;
    EXPECT_TRUE(object.exportProperty(value));
    return Json::convertToString(value, false);
}

zet::Uuid idOf(unsigned char first)
{
    unsigned char bytes[16];
    for (int i = 0; i < 16; ++i)
        bytes[i] = static_cast<unsigned char>(first + i);
    zet::Uuid id;
    std::memcpy(&id, bytes, sizeof id);
    return id;
}

zet::Buffer bufferOf(std::initializer_list<unsigned char> bytes)
{
    zet::Buffer buffer(static_cast<int>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.getBuffer());
    return buffer;
}

TEST(Property, AttributesKeepTheirOrderNamesAndDescriptions)
{
    Point point;
    const PropertyAttributes& table = point.getPropertyAttributes();
    ASSERT_EQ(table.size(), 2U);
    EXPECT_STREQ(table[0]->getName(), L"id");
    EXPECT_STREQ(table[0]->getTypeName(), L"zet::Uuid");
    EXPECT_STREQ(table[0]->getDescription(), L"The point's own.");
    EXPECT_STREQ(table[1]->getName(), L"bytes");
    EXPECT_EQ(table[0]->getValue(point), &point.m_Id);
}

TEST(Property, AMergedTableHasTheBaseFirstAndEachNameOnce)
{
    const Registered registered;
    const Shape shape;
    const PropertyAttributes& table = shape.getPropertyAttributes();
    ASSERT_EQ(table.size(), 4U);
    EXPECT_STREQ(table[0]->getName(), L"id");
    EXPECT_STREQ(table[3]->getName(), L"marks");
    PropertyAttributes twice = table;
    PropertyAttributeHelper::mergePropertyAttribute(twice, table);
    EXPECT_EQ(twice.size(), 4U);
    EXPECT_FALSE(PropertyAttributeHelper::registerPropertyAttribute(twice, *table[1]));
    EXPECT_EQ(twice.size(), 4U);
}

TEST(Property, ExportsEveryFieldUnderItsName)
{
    Point point;
    EXPECT_TRUE(exported(point) == L"{\"id\":\"00000000000000000000000000000000\",\"bytes\":\"\"}");
    point.m_Id = idOf(0x9A);
    point.m_Bytes = bufferOf({0x00, 0xFF, 0x3C});
    EXPECT_TRUE(exported(point) == L"{\"id\":\"9a9b9c9d9e9fa0a1a2a3a4a5a6a7a8a9\",\"bytes\":\"00ff3c\"}");
}

TEST(Property, ImportsWhatItExports)
{
    Point point;
    point.m_Id = idOf(1);
    point.m_Bytes = bufferOf({7, 8, 9});
    JsonValue value;
    ASSERT_TRUE(point.exportProperty(value));
    Point again;
    ASSERT_TRUE(again.importProperty(value));
    EXPECT_TRUE(again.m_Id == point.m_Id);
    EXPECT_TRUE(again.m_Bytes == point.m_Bytes);
}

TEST(Property, UpperCaseDigitsAreDigits)
{
    Point point;
    EXPECT_TRUE(point.importProperty(parsed(L"{\"bytes\":\"AbCdEF\"}")));
    EXPECT_TRUE(point.m_Bytes == bufferOf({0xAB, 0xCD, 0xEF}));
}

TEST(Property, MissingAndNullFieldsStayAsTheyWere)
{
    Point point;
    point.m_Id = idOf(1);
    point.m_Bytes = bufferOf({5});
    EXPECT_TRUE(point.importProperty(parsed(L"{}")));
    EXPECT_TRUE(point.importProperty(parsed(L"{\"id\":null}")));
    EXPECT_TRUE(point.m_Id == idOf(1));
    EXPECT_TRUE(point.m_Bytes == bufferOf({5}));
}

TEST(Property, UnknownNamesArePassedOver)
{
    Point point;
    EXPECT_TRUE(point.importProperty(parsed(L"{\"ID\":1,\"bytes\":\"01\",\"\":[{}],\"__proto__\":{\"id\":\"x\"}}")));
    EXPECT_TRUE(point.m_Id.isNull());
    EXPECT_TRUE(point.m_Bytes == bufferOf({1}));
}

TEST(Property, AnythingButAnObjectIsRefused)
{
    Point point;
    for (const wchar_t* text : {L"[]", L"null", L"1", L"\"id\"", L"true"})
        EXPECT_FALSE(point.importProperty(parsed(text))) << Text(text).getLength();
}

TEST(Property, AMismatchedValueLeavesItsFieldAndThoseAfterIt)
{
    Point point;
    point.m_Id = idOf(1);
    point.m_Bytes = bufferOf({5});
    const wchar_t* const misfits[] = {
        L"{\"id\":1,\"bytes\":\"06\"}",
        L"{\"id\":[],\"bytes\":\"06\"}",
        L"{\"id\":\"\",\"bytes\":\"06\"}",
        L"{\"id\":\"0102030405060708090a0b0c0d0e0f1\",\"bytes\":\"06\"}",
        L"{\"id\":\"0102030405060708090a0b0c0d0e0f101\",\"bytes\":\"06\"}",
        L"{\"id\":\"0102030405060708090a0b0c0d0e0f1g\",\"bytes\":\"06\"}",
        L"{\"bytes\":\"0\"}",
        L"{\"bytes\":\"0x\"}",
        L"{\"bytes\":7}",
        L"{\"bytes\":{}}",
        L"{\"bytes\":false}",
    };
    for (const wchar_t* text : misfits)
    {
        EXPECT_FALSE(point.importProperty(parsed(text)));
        EXPECT_TRUE(point.m_Id == idOf(1));
        EXPECT_TRUE(point.m_Bytes == bufferOf({5}));
    }
    // The fields before it are set.
    EXPECT_FALSE(point.importProperty(parsed(L"{\"id\":\"00000000000000000000000000000000\",\"bytes\":7}")));
    EXPECT_TRUE(point.m_Id.isNull());
}

TEST(Property, ObjectsInsideObjectsGoRound)
{
    const Registered registered;
    Shape shape;
    shape.m_Points.emplace_back(new Point);
    shape.m_Points[0]->m_Bytes = bufferOf({1});
    shape.m_Points.emplace_back(new Shape);
    shape.m_Points.emplace_back();
    shape.m_Marks.emplace_back(new Point);
    JsonValue value;
    ASSERT_TRUE(PropertyHelper::convertPropertyToJson(&shape, value));
    zet::Unknown::Handle_T<Property> made;
    ASSERT_TRUE(PropertyHelper::convertPropertyToClass(value, made));
    const Shape* const again = dynamic_cast<Shape*>(made.get());
    ASSERT_NE(again, nullptr);
    ASSERT_EQ(again->m_Points.size(), 3U);
    EXPECT_TRUE(again->m_Points[0]->m_Bytes == bufferOf({1}));
    EXPECT_NE(dynamic_cast<Shape*>(again->m_Points[1].get()), nullptr);
    EXPECT_TRUE(again->m_Points[2].isNull());
    EXPECT_EQ(again->m_Marks.size(), 1U);
    JsonValue second;
    ASSERT_TRUE(PropertyHelper::convertPropertyToJson(made, second));
    EXPECT_TRUE(Json::convertToString(second, false) == Json::convertToString(value, false));
}

TEST(Property, AWholeObjectIsItsClassAndItsFields)
{
    const Registered registered;
    Point point;
    JsonValue value;
    ASSERT_TRUE(PropertyHelper::convertPropertyToJson(&point, value));
    EXPECT_TRUE(Json::convertToString(value, false) ==
                L"{\"class\":\"TestPoint\",\"property\":{\"id\":\"00000000000000000000000000000000\",\"bytes\":\"\"}}");
    ASSERT_TRUE(PropertyHelper::convertPropertyToJson(nullptr, value));
    EXPECT_TRUE(value.isNull());
    zet::Unknown::Handle_T<Property> made = new Point;
    EXPECT_TRUE(PropertyHelper::convertPropertyToClass(value, made));
    EXPECT_TRUE(made.isNull());
}

class NoProperty : public zet::Unknown
{
};

TEST(Property, AnIncompleteObjectMakesNone)
{
    const Registered registered;
    const zet::RtRegistration other(L"TestNoProperty", &make<NoProperty>);
    const wchar_t* const misfits[] = {
        L"[]",
        L"7",
        L"{}",
        L"{\"class\":7,\"property\":{}}",
        L"{\"class\":\"NoSuchClass\",\"property\":{}}",
        L"{\"class\":\"TestNoProperty\",\"property\":{}}",
        L"{\"class\":\"TestPoint\"}",
        L"{\"class\":\"TestPoint\",\"property\":[]}",
        L"{\"class\":\"TestPoint\",\"property\":{\"id\":7}}",
        L"{\"class\":\"TestShape\",\"property\":{\"points\":7}}",
        L"{\"class\":\"TestShape\",\"property\":{\"points\":[7]}}",
        L"{\"class\":\"TestShape\",\"property\":{\"points\":[{\"class\":\"TestPoint\"}]}}",
    };
    for (const wchar_t* text : misfits)
    {
        zet::Unknown::Handle_T<Property> made = new Point;
        EXPECT_FALSE(PropertyHelper::convertPropertyToClass(parsed(text), made));
        EXPECT_TRUE(made.isNull());
    }
}

TEST(Property, AnObjectOfAnotherClassIsNoElement)
{
    const Registered registered;
    using ShapeArray = std::vector<zet::Unknown::Handle_T<Shape>>;
    const zet::HandlesConverter_T<ShapeArray> converter;
    ShapeArray shapes;
    EXPECT_FALSE(converter.convertFromJson(parsed(L"[{\"class\":\"TestPoint\",\"property\":{}}]"), &shapes));
    EXPECT_TRUE(converter.convertFromJson(parsed(L"[{\"class\":\"TestShape\",\"property\":{}}]"), &shapes));
    EXPECT_EQ(shapes.size(), 1U);
}

TEST(Property, AConverterOfAnotherTypeIsNotUsed)
{
    Point point;
    const zet::PropertyAttribute_T<&Point::m_Bytes> misnamed(L"bytes", L"zet::Uuid", L"");
    const zet::PropertyAttribute_T<&Point::m_Bytes> nameless(L"bytes", L"no such type", L"");
    JsonValue value(L"00000000000000000000000000000000");
    EXPECT_FALSE(zet::PropertyAttribute_set(point, misnamed, value));
    EXPECT_FALSE(zet::PropertyAttribute_get(point, misnamed, value));
    EXPECT_FALSE(zet::PropertyAttribute_set(point, nameless, value));
    EXPECT_FALSE(zet::PropertyAttribute_get(point, nameless, value));
}

TEST(Property, AnAttributeOfAnotherClassFindsNoField)
{
    class Other : public Property
    {
    };
    Other other;
    const PropertyAttributes table = Point::makeTable();
    JsonValue value(L"00");
    EXPECT_FALSE(zet::PropertyAttribute_set(other, *table[1], value));
    EXPECT_FALSE(zet::PropertyAttribute_get(other, *table[1], value));
    EXPECT_TRUE(exported(other) == L"{}");
}

TEST(Property, ATornDownConverterIsGone)
{
    const zet::HandlesConverter_T<PointArray> converter;
    PropertyFactory::setUpPropertyConverter(L"TestGone", converter);
    EXPECT_EQ(PropertyFactory::getPropertyConverter(L"TestGone"), &converter);
    PropertyFactory::tearDownPropertyConverter(L"TestGone");
    EXPECT_EQ(PropertyFactory::getPropertyConverter(L"TestGone"), nullptr);
    PropertyFactory::tearDownPropertyConverter(L"TestGone");
}

// A structure with a member table.
struct Pair
{
    zet::Varint m_Number;
    zet::Buffer m_Bytes;
};
constexpr zet::Member_T<Pair> kPairTable[] = {zet::memberOf<&Pair::m_Number>(L"number"),
                                              zet::memberOf<&Pair::m_Bytes>(L"bytes")};

TEST(MemberTable, WritesAndReadsTheMembersInTheirOrder)
{
    Pair pair;
    pair.m_Number.m_Value = 300;
    pair.m_Bytes = bufferOf({1, 2});
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    zet::writeMtbl(out, pair, kPairTable);
    const unsigned char expected[] = {0xAC, 0x02, 0x02, 0x01, 0x02};
    ASSERT_EQ(store->getSize(), static_cast<int>(sizeof expected));
    EXPECT_EQ(std::memcmp(store->view(sizeof expected), expected, sizeof expected), 0);
    Pair again;
    zet::InputStream in(store.get());
    zet::readMtbl(in, again, kPairTable);
    EXPECT_EQ(again.m_Number.m_Value, 300U);
    EXPECT_TRUE(again.m_Bytes == pair.m_Bytes);
}

TEST(MemberTable, ACutStreamThrowsAndLeavesTheMembersBeforeIt)
{
    const unsigned char cut[] = {0x05, 0x03, 0x01};
    const auto store = zet::MemoryStream::createInstance();
    store->write(cut, sizeof cut);
    Pair pair;
    zet::InputStream in(store.get());
    EXPECT_THROW(zet::readMtbl(in, pair, kPairTable), zet::Exception);
    EXPECT_EQ(pair.m_Number.m_Value, 5U);
    EXPECT_EQ(pair.m_Bytes.getBufferSize(), 0);
}

} // namespace
