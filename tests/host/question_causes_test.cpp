// What the end of a connection answers to its open questions.
#include "tests/host/conversation.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using namespace std::chrono_literals;
using zet::EndCause;

TEST(QuestionCauses, ALostConnectionAnswersEachQuestionOnceWithItsCause)
{
    test::Conversation talk;
    const test::ClientHandle client = talk.connect();
    ASSERT_TRUE(client);
    host::Tasks tasks(*talk.m_Questions);
    std::vector<EndCause> causes;
    for (unsigned long i = 0; i < 3; ++i)
        tasks.ask<CCmdServerEchoReply>(*client, test::echoOf(i), 5s,
                                       [&](const test::EchoReply& reply)
                                       { causes.push_back(std::get<host::Unanswered>(reply).m_Cause); });
    ASSERT_TRUE(talk.wasAsked(talk.accepted(), 3));
    talk.accepted().close();
    ASSERT_TRUE(talk.tickUntil([&] { return causes.size() == 3; }));
    talk.advance(10000);
    EXPECT_EQ(causes, std::vector<EndCause>(3, EndCause{EndCause::kClosedByPeer, 0}));
    // The connection is down, which a new question learns with the same cause.
    tasks.ask<CCmdServerEchoReply>(*client, test::echoOf(4), 5s,
                                   [&](const test::EchoReply& reply)
                                   { causes.push_back(std::get<host::Unanswered>(reply).m_Cause); });
    ASSERT_TRUE(talk.tickUntil([&] { return causes.size() == 4; }));
    EXPECT_EQ(causes.back().m_Code, EndCause::kClosedByPeer);
}

TEST(QuestionCauses, ADestroyedSocketAnswersItsQuestions)
{
    test::Conversation talk;
    host::Tasks tasks(*talk.m_Questions);
    int replies = 0;
    {
        test::Client onStack(talk.m_ClientAnalyser.get());
        onStack.connect(L"127.0.0.1", talk.m_Loopback.m_Server->getPort(), false);
        ASSERT_TRUE(talk.tickUntil([&] { return talk.m_Loopback.m_Server->m_Accepted.size() == 1; }));
        tasks.ask<CCmdServerEchoReply>(onStack, test::echoOf(1), 5s,
                                       [&](const test::EchoReply& reply) {
                                           replies +=
                                               std::get<host::Unanswered>(reply).m_Reason == host::Unanswered::kEnded;
                                       });
        EXPECT_EQ(talk.m_Questions->getOpenCount(), 1);
    }
    ASSERT_TRUE(talk.tickUntil([&] { return replies == 1; }));
    EXPECT_EQ(talk.m_Questions->getOpenCount(), 0);
}

} // namespace
