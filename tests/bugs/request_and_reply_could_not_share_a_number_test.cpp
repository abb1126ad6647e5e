// A PackRouter refused one number for two messages even if no envelope carries both. The social protocol gives a
// request and its reply one number, and hosts may number the void-data messages so: neither could be routed.
#include "host/pack_router.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using zet::Log;

TEST(Bugs, ASocialRequestAndItsReplyHaveOneNumber)
{
    const test::LogLines lines;
    host::PackRouter<CCmdSocialRequest, CCmdSocialReply> social;
    EXPECT_TRUE(social.number<CmdSocialOccupyAPIRequest>(kSocialOccupyAPI));
    EXPECT_TRUE(social.number<CmdSocialOccupyAPIReply>(kSocialOccupyAPI));
    EXPECT_TRUE(lines.texts().empty());
}

TEST(Bugs, ARequestAndAReplyOfVoidDataMayHaveOneNumber)
{
    const test::LogLines lines;
    host::PackRouter<CCmdVoidDataRequest, CCmdVoidDataReply> account;
    EXPECT_TRUE(account.number<CmdRandomNickRequest>(7));
    EXPECT_TRUE(account.number<CmdRandomNickReply>(7));
    EXPECT_TRUE(lines.texts().empty());
    EXPECT_FALSE(account.number<CmdServerDateReply>(7)) << "one envelope carries both";
    EXPECT_TRUE(lines.has(Log::kError, L"PackRouter of CCmdVoidDataRequest, CCmdVoidDataReply: CmdServerDateReply has "
                                       L"the number 7 of CmdRandomNickReply"));
}

} // namespace
