// What a command that does not read says: its class, the path of the field, the element, the offset, what was needed
// and what was there.
#include "packaging/command_head.h"
#include "tests/support/decoded.h"
#include "tools/class_table.h"
#include "tools/reading.h"
#include "tools/schema_reader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace
{

using Json = nlohmann::ordered_json;
using test::decoded;

const std::string kHead = std::string("\x00\x02\x00\x07", 4) + std::string(17, '\0');

tools::Explanation explained(const std::string& className, const std::string& bytes, tools::Limits limits)
{
    return tools::explain(tools::findClass(className)->m_Wire(), bytes, limits);
}

TEST(ReadFailure, OfACommandNamesClassFieldOffsetAndBytes)
{
    const Json line = decoded("CCmdServerEcho", kHead + std::string(3, '\0'));
    EXPECT_EQ(line["error"], "refused by Read");
    EXPECT_EQ(line["why"], "CCmdServerEcho: needed 4, had 3 at m_Data, offset 21");
    EXPECT_EQ(line["at"], Json({{"field", "m_Data"}, {"offset", 21}, {"needed", 4}, {"had", 3}}));
    EXPECT_EQ(line["fields"]["m_ClientIndex"], 7);
}

TEST(ReadFailure, OfAnElementNamesItsPlace)
{
    // Two texts announced, the second one cut within its units.
    const std::string second("\x00\x00\x00\x02\x01\x61\x00\x03\x61\x00", 10);
    const Json line = decoded("CCmdMazurixOnUsersLeaveLessonNotify", kHead + second);
    EXPECT_EQ(line["at"], Json({{"field", "m_Texts[1]"}, {"element", 1}, {"offset", 29}, {"needed", 6}, {"had", 2}}));
}

TEST(ReadFailure, OfAnotherVersionNamesBoth)
{
    const Json line = decoded("CCmdHostnameRequest", std::string("\x00\x03\x00\x07\x09", 5));
    EXPECT_EQ(line["why"], "CCmdHostnameRequest: version 3, not 2 at (version), offset 0");
    EXPECT_EQ(line["at"], Json({{"field", "(version)"}, {"offset", 0}}));
}

TEST(ReadFailure, OfATextNamesItsUnitsAndTheLimit)
{
    const std::string text = "\x43\xE9" + std::string(2002, 'a');
    const Json line = decoded("CCmdServerRegisterFail", kHead + text);
    EXPECT_EQ(line["why"], "CCmdServerRegisterFail: 1001 units, more than 1000 at m_Msg, offset 21");
    EXPECT_FALSE(line["at"].contains("needed"));
    // Data has no such limit.
    EXPECT_EQ(explained("CCmdServerRegisterFail", kHead + text, tools::Limits::kNone).m_Failure, "");
}

TEST(ReadFailure, OfABufferNamesItsBytesAndTheLimit)
{
    const std::string size("\x00\xA0\x00\x01", 4);
    const Json line = decoded("CCmdScreenSynResponse", kHead + size);
    EXPECT_NE(line["why"].get<std::string>().find("10485761 bytes, more than 10485760 at "), std::string::npos) << line;
    // A tunnel's frame has no limit of its own: bytes are missing.
    const Json tunnel = decoded("CCmdGZ_serverToClient", kHead + size);
    EXPECT_EQ(tunnel["at"], Json({{"field", "m_Data1"}, {"offset", 25}, {"needed", 10485761}, {"had", 0}}));
}

TEST(ReadFailure, OfBytesAfterTheLastFieldNamesTheirOffset)
{
    const Json line = decoded("CCmdServerEcho", kHead + std::string(6, '\0'));
    EXPECT_EQ(line["error"], "2 bytes after the last field");
    EXPECT_EQ(line["at"], Json({{"offset", 25}}));
    EXPECT_FALSE(line.contains("why"));
}

// The elements of an array have no name either, and are no version.
TEST(ReadFailure, IsNoneForTheDefaultObjectOfEveryCommand)
{
    for (const tools::ClassInfo& info : tools::classTable())
    {
        if (info.m_Family != tools::Family::kCommand)
            continue;
        bool isWritten = false;
        const std::string bytes = tools::writeObject(info, tools::Form::kCmd, info.make().get(), isWritten);
        EXPECT_EQ(explained(info.m_Name, bytes, tools::Limits::kOfCommands).m_Failure, "") << info.m_Name;
    }
}

} // namespace
