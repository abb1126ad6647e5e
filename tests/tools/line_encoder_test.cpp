#include "tools/line_encoder.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using tools::TextWidth;

// The payload of a command, or the bytes of a record, as hexadecimal; or what is wrong.
std::string encoded(const std::string& line, TextWidth width = TextWidth::k16)
{
    const auto result = std::make_unique<tools::EncodedLine>();
    const std::string fault = tools::encodeLine(line, width, *result);
    if (!fault.empty())
        return fault;
    if (!result->isCommand())
        return tools::hexOf(result->m_Bytes.data(), result->m_Bytes.size());
    return tools::hexOf(result->m_Command.GetBuffer(), static_cast<size_t>(result->m_Command.GetDataSize()));
}

TEST(LineEncoder, FieldsBecomeTheBytesOfTheirClass)
{
    EXPECT_EQ(encoded(R"({"class":"CCmdHostnameRequest","fields":{"m_ClientIndex":7,"m_ServerType":9}})"),
              "0002000709");
}

TEST(LineEncoder, TheOrderInTheJsonDoesNotMatter)
{
    EXPECT_EQ(encoded(R"({"fields":{"m_ServerType":9,"m_ClientIndex":7},"class":"CCmdHostnameRequest"})"),
              "0002000709");
}

TEST(LineEncoder, TextHasTheFormOfTheWidth)
{
    const std::string line = R"({"class":"FGameItem","form":"data","fields":{"m_Name":"aé"}})";
    EXPECT_NE(encoded(line, TextWidth::k16).find("026100e900"), std::string::npos) << encoded(line, TextWidth::k16);
    EXPECT_NE(encoded(line, TextWidth::k32).find("066100e9000000000000000000"), std::string::npos)
        << encoded(line, TextWidth::k32);
}

TEST(LineEncoder, CharactersBeyondTheBasicPlaneAreAPairIn16BitText)
{
    const std::string line = R"({"class":"FGameItem","form":"data","fields":{"m_Name":"😀"}})";
    EXPECT_NE(encoded(line, TextWidth::k16).find("023dd800de"), std::string::npos) << encoded(line, TextWidth::k16);
    // The one pair that a writer with 32 bits sends for all of them.
    EXPECT_NE(encoded(line, TextWidth::k32).find("0440d800dc00000000"), std::string::npos)
        << encoded(line, TextWidth::k32);
}

TEST(LineEncoder, AMissingFieldTakesItsDefault)
{
    for (const tools::ClassInfo& info : tools::classTable())
    {
        const tools::Form form = tools::hasForm(info, tools::Form::kCmd) ? tools::Form::kCmd : tools::Form::kData;
        bool write = false;
        const std::string bytes = tools::writeObject(info, form, info.make().get(), write);
        ASSERT_TRUE(write) << info.m_Name;
        EXPECT_EQ(encoded("{\"class\":\"" + std::string(info.m_Name) + "\",\"fields\":{}}", tools::kNativeWidth),
                  tools::hexOf(bytes.data(), bytes.size()))
            << info.m_Name;
    }
}

TEST(LineEncoder, AnUnknownFieldIsNamedWithItsPath)
{
    EXPECT_EQ(encoded(R"({"class":"CCmdHostnameRequest","fields":{"m_Servertype":9}})"),
              "CCmdHostnameRequest: m_Servertype is not a field of CCmdHostnameRequest");
    EXPECT_EQ(encoded(R"({"class":"AccountData","form":"data","fields":{"m_ItemList":[{},{"m_Nmu":1}]}})"),
              "AccountData: m_ItemList[1].m_Nmu is not a field of FGameItem");
    EXPECT_EQ(encoded(R"({"class":"CCmdHostnameRequest","fields":{"":1}})"),
              "CCmdHostnameRequest: \"\" is not a field of CCmdHostnameRequest");
}

TEST(LineEncoder, AValueOutOfRangeIsNamedWithItsRange)
{
    EXPECT_EQ(encoded(R"({"class":"CCmdHostnameRequest","fields":{"m_ClientIndex":65536}})"),
              "CCmdHostnameRequest: m_ClientIndex is 65536, out of the range from 0 to 65535");
    EXPECT_EQ(encoded(R"({"class":"CCmdHostnameRequest","fields":{"m_ClientIndex":-1}})"),
              "CCmdHostnameRequest: m_ClientIndex is -1, out of the range from 0 to 65535");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Num":-2147483649}})"),
              "FGameItem: m_Num is -2147483649, out of the range from -2147483648 to 2147483647");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Num":18446744073709551615}})"),
              "FGameItem: m_Num is 18446744073709551615, out of the range from -2147483648 to 2147483647");
    EXPECT_EQ(encoded(R"({"class":"CCmdServerEcho","fields":{"m_ClientAddress":"00"}})"),
              "CCmdServerEcho: m_ClientAddress has 1 bytes, not 16");
}

TEST(LineEncoder, AValueOfAnotherKindIsRefused)
{
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Num":"1"}})"), "FGameItem: m_Num is not a whole number");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Num":1.5}})"), "FGameItem: m_Num is not a whole number");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Num":true}})"), "FGameItem: m_Num is not a whole number");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Name":1}})"), "FGameItem: m_Name is not a text");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":{"m_Name":"a\u0000b"}})"),
              "FGameItem: m_Name has a zero character, which ends a text");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","fields":[]})"), "FGameItem: fields is not an object of FGameItem");
    EXPECT_EQ(encoded(R"({"class":"AccountData","form":"data","fields":{"m_ItemList":{}}})"),
              "AccountData: m_ItemList is not an array");
    EXPECT_EQ(encoded(R"({"class":"CCmdServerEcho","fields":{"m_ClientAddress":"zz"}})"),
              "CCmdServerEcho: m_ClientAddress is not a text of hexadecimal digits");
    EXPECT_EQ(encoded(R"({"class":"CCmdRemoteCamera","fields":{"m_Flag1":1}})"),
              "CCmdRemoteCamera: m_Flag1 is not true or false");
}

TEST(LineEncoder, AnArrayHasAllItsElements)
{
    EXPECT_EQ(encoded(R"({"class":"CCmdMaskImage","fields":{"m_Size":2,"m_Data":"00"}})"),
              "CCmdMaskImage: m_Data has 1 bytes, not 2");
    EXPECT_EQ(encoded(R"({"class":"CCmdSkeletons","fields":{"m_Values":[1,2]}})")
                  .find("CCmdSkeletons: m_Values has 2 elements, not "),
              0u);
}

TEST(LineEncoder, TextBeyondWhatAWriterSendsIsRefused)
{
    const std::string line =
        R"({"class":"CCmdServerEcho","fields":{"m_AccountName":")" + std::string(1001, 'a') + "\"}}";
    EXPECT_EQ(encoded(line, TextWidth::k32), "CCmdServerEcho: m_AccountName has 1001 characters, which do not fit");
    // The writer with 16 bits has no such limit.
    EXPECT_EQ(encoded(line, TextWidth::k16).size(), 2u * (20 + 2 + 2002 + 4));
}

TEST(LineEncoder, TheLinesOfOtherCommandsAreTakenAsTheyAre)
{
    // What decode prints for an id that no class has.
    const auto result = std::make_unique<tools::EncodedLine>();
    const std::string line = R"({"id":"0x4012","from":"000102030405060708090a0b0c0d0e0f","size":2,)"
                             R"("error":"unknown id","payload":"0a0b"})";
    EXPECT_EQ(tools::encodeLine(line, TextWidth::k16, *result), "");
    EXPECT_EQ(result->m_Command.GetCmdID(), 0x4012);
    EXPECT_FALSE(result->m_Command.GetFromAddress().isNull());
    EXPECT_TRUE(result->m_Command.GetTargetAddress().isNull());
    EXPECT_EQ(result->m_Command.GetDataSize(), 2);
    // The next line starts anew.
    EXPECT_EQ(tools::encodeLine(R"({"class":"CCmdServerEcho","fields":{}})", TextWidth::k16, *result), "");
    EXPECT_TRUE(result->m_Command.GetFromAddress().isNull());
}

TEST(LineEncoder, ReportsWhatIsWrongWithALine)
{
    EXPECT_EQ(encoded("{"), "the line is not valid JSON");
    EXPECT_EQ(encoded("[]"), "the line is not a JSON object");
    EXPECT_EQ(encoded("{}"), "there is no class");
    EXPECT_EQ(encoded(R"({"class":"Nobody","fields":{}})"), "no class \"Nobody\"");
    EXPECT_EQ(encoded(R"({"class":1,"fields":{}})"), "no class 1");
    EXPECT_EQ(encoded(R"({"class":"FGameItem"})"), "FGameItem: there are no fields; {} gives all their defaults");
    EXPECT_EQ(encoded(R"({"class":"FGameItem","form":"tcp","fields":{}})"), "FGameItem: the form is cmd or data");
    EXPECT_EQ(encoded(R"({"class":"CCmdServerEcho","id":"0x1001","fields":{}})"),
              "the id is not that of CCmdServerEcho");
    EXPECT_EQ(encoded(R"({"class":"CCmdServerEcho","target":"00","fields":{}})"),
              "target is not a text of 32 hexadecimal digits");
    EXPECT_EQ(encoded(R"({"class":"CCmdServerEcho","error":"refused by Read","fields":{}})"),
              "the line has an error, so its fields are not whole: refused by Read");
    EXPECT_EQ(encoded(R"({"payload":"00"})"), "a payload without a class needs an id such as \"0x1013\"");
    EXPECT_EQ(encoded(R"({"id":"0x4012","payload":"0"})"), "payload is not a text of hexadecimal digits");
}

} // namespace
