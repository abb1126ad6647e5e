// wirelens decode named the first field without its bytes as the one that failed. A class that does not test it reads
// on, often to a field of fewer bytes, and fails elsewhere: the index of every head, the list before the head of
// CCmdGS_PawnRunning and all texts of AccountGlobalData were blamed for failures of other fields.
#include "tests/support/decoded.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace
{

using Json = nlohmann::ordered_json;
using test::decoded;

TEST(DecodeBlamedUntestedFields, AHeadFailsAfterItsIndex)
{
    const Json line = decoded("CCmdServerEcho", std::string("\x00\x02\x07", 3));
    EXPECT_EQ(line["why"], "CCmdServerEcho: needed 16, had 1 at m_ClientAddress, offset 2");
}

TEST(DecodeBlamedUntestedFields, AListBeforeTheHeadDecidesNothing)
{
    // The two bytes are the version, since no count can be read from them.
    const Json line = decoded("CCmdGS_PawnRunning", std::string("\x00\x02", 2));
    EXPECT_EQ(line["why"], "CCmdGS_PawnRunning: needed 16, had 0 at m_ClientAddress, offset 2");
}

TEST(DecodeBlamedUntestedFields, ARecordFailsAtTheCountThatItTests)
{
    // The head, an id, and an empty text.
    const std::string payload = std::string("\x00\x02\x00\x07", 4) + std::string(17 + 16 + 1, '\0');
    const Json line = decoded("CCmdLoginSuccess", payload);
    EXPECT_EQ(line["at"], Json({{"field", "m_GlobalData.m_LastServerList(count)"},
                                {"offset", payload.size()},
                                {"needed", 4},
                                {"had", 0}}));
}

} // namespace
