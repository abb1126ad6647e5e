// Match4Pack_CheckHstryRec_Reply is read into the elements that its lists have, and a PackRouter read it into a new
// object whose lists have none: its handler never saw a line. on() now takes a callable that sizes them.
#include "host/pack_router.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

TEST(Bugs, TheHistoryIsReadIntoPreparedLists)
{
    const test::LogLines lines;
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    const zet::Unknown::Handle_T<CCommandSocket> socket = CCommandSocket::createInstance(analyser.get());
    host::Handlers handlers(*analyser);
    host::PackRouter<CCmdMatchPackRequest, CCmdMatchPackReply> match;
    int calls = 0;
    EXPECT_TRUE(match.on<Match4Pack_CheckHstryRec_Reply>(
        1,
        [&](CCommandSocket&, Match4Pack_CheckHstryRec_Reply& reply)
        {
            ++calls;
            ASSERT_EQ(reply.m_History1.size(), 2U);
            ASSERT_EQ(reply.m_History2.size(), 3U);
            EXPECT_EQ(reply.m_History1[1].m_Value1, 12);
            EXPECT_EQ(reply.m_History2[0].m_Value1, 21);
            EXPECT_EQ(reply.m_History2[1].m_Value1, 0) << "one was sent";
        },
        [](Match4Pack_CheckHstryRec_Reply& reply)
        {
            reply.m_History1.resize(2);
            reply.m_History2.resize(3);
        }));
    ASSERT_TRUE(match.install(handlers));

    Match4Pack_CheckHstryRec_Reply sent;
    sent.m_History1.resize(2);
    sent.m_History1[1].m_Value1 = 12;
    sent.m_History2.resize(1);
    sent.m_History2[0].m_Value1 = 21;
    const auto envelope = std::make_unique<CCmdMatchPackReply>();
    envelope->m_PackType = 1;
    ASSERT_TRUE(sent.Write(&envelope->m_PackData));
    for (int i = 0; i < 2; ++i)
    {
        // Each received message is prepared.
        const auto packager = std::make_unique<CCmdPackager>();
        ASSERT_TRUE(envelope->Write(packager.get()));
        EXPECT_TRUE(analyser->Analyse(socket, *packager));
    }
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(lines.texts().empty());
}

} // namespace
