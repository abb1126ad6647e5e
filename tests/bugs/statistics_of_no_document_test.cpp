// A text that only starts like JSON, such as an error page instead of the document ("404 page not found"), was parsed
// as the number or word at its start, which has no keys, and set all figures to 0. Such a text now leaves the object
// unchanged. Text after a complete object is still ignored.
#include "runtime/system_cmd_info.h"

#include <gtest/gtest.h>

namespace
{

TEST(Bugs, AnErrorPageLeavesTheStatisticsAsTheyWere)
{
    SystemCmdInfo info;
    info.FromJsonString(L"{\"mem\":512,\"tick\":16,\"connect\":2,\"cmdsop\":{\"count\":1}} and more");
    EXPECT_EQ(info.GetMemeryCost(), 512);
    const zet::String_T<wchar_t> before = info.ToJsonString();
    for (const wchar_t* text :
         {L"404 page not found", L"502 Bad Gateway", L"true story", L"false alarm", L"nullify", L"-1 is no document",
          L"[1,2] is no document", L"\"mem\": 5", L"1.5e3x", L"[] {\"mem\":1}", L"404\n404", L"7,"})
    {
        info.FromJsonString(text);
        EXPECT_EQ(info.ToJsonString(), before) << std::string(text, text + std::wcslen(text));
    }
}

TEST(Bugs, BlanksAfterAValueAreIgnored)
{
    // A whole document without the keys: each missing key gives 0.
    for (const wchar_t* text : {L"404", L" 404 \r\n\t", L"[1,2]\n", L"true "})
    {
        SystemCmdInfo info;
        info.AddConnect();
        info.FromJsonString(text);
        EXPECT_EQ(info.GetConnectCount(), 0);
    }
}

} // namespace
