// Questions with callbacks.
#include "host/tasks.h"

#include "tests/host/conversation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace
{

using namespace std::chrono_literals;
using host::Reply;
using host::Unanswered;
using test::ClientHandle;
using test::echoOf;
using test::EchoReply;
using test::textOf;
using zet::Log;

class HostQuestions : public testing::Test
{
protected:
    HostQuestions() { EXPECT_TRUE(m_Client); }

    // Notes the reply.
    void ask(unsigned long number, std::chrono::milliseconds timeOut)
    {
        m_Tasks->ask<CCmdServerEchoReply>(*m_Client, echoOf(number), timeOut,
                                          [this](const EchoReply& reply) { m_Replies.push_back(textOf(reply)); });
    }
    using Texts = std::vector<std::wstring>;

    test::Conversation m_Talk;
    std::unique_ptr<host::Tasks> m_Tasks = std::make_unique<host::Tasks>(*m_Talk.m_Questions);
    ClientHandle m_Client = m_Talk.connect();
    Texts m_Replies;
};

TEST_F(HostQuestions, AnswersCallBackInTheOrderOfAsking)
{
    ask(1, 5s);
    ask(2, 5s);
    EXPECT_TRUE(m_Replies.empty());
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 2);
    EXPECT_EQ(m_Tasks->getCount(), 2);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 2));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
    EXPECT_EQ(m_Replies, (Texts{L"1", L"2"}));
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 0);
    EXPECT_EQ(m_Tasks->getCount(), 0);
    EXPECT_TRUE(m_Talk.m_Lines.texts().empty());
}

TEST_F(HostQuestions, ReplyHasTheClassOfTheAnswer)
{
    zet::String_T<wchar_t> reason;
    m_Tasks->ask<CCmdServerEchoReply, CCmdServerRegisterFail>(
        *m_Client, echoOf(1), 5s,
        [&](Reply<CCmdServerEchoReply, CCmdServerRegisterFail> reply)
        {
            if (const auto* const fail = std::get_if<CCmdServerRegisterFail>(&reply))
                reason = fail->m_Msg;
        });
    CCmdServerRegisterFail fail;
    fail.m_Msg = L"full";
    m_Talk.accepted().send(fail);
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Tasks->getCount() == 0; }));
    EXPECT_EQ(reason, L"full");
}

TEST_F(HostQuestions, QuestionsOfDifferentClassesDoNotWaitForEachOther)
{
    bool hasFailed = false;
    ask(1, 5s);
    m_Tasks->ask<CCmdServerRegisterFail>(*m_Client, CCmdServerRegister(), 5s,
                                         [&](Reply<CCmdServerRegisterFail> reply)
                                         { hasFailed = std::holds_alternative<CCmdServerRegisterFail>(reply); });
    m_Talk.accepted().send(CCmdServerRegisterFail());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return hasFailed; }));
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 1);
}

TEST_F(HostQuestions, ConnectionsAreMatchedApart)
{
    CCommandSocket& first = m_Talk.accepted();
    const ClientHandle other = m_Talk.connect();
    ASSERT_TRUE(other);
    CCommandSocket& second = m_Talk.accepted();
    ask(1, 5s);
    m_Tasks->ask<CCmdServerEchoReply>(
        *other, echoOf(2), 5s, [this](const EchoReply& reply) { m_Replies.push_back(L"other " + textOf(reply)); });
    ASSERT_TRUE(m_Talk.wasAsked(first, 1) && m_Talk.wasAsked(second, 1));
    m_Talk.answer(second);
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 1; }));
    m_Talk.answer(first);
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
    EXPECT_EQ(m_Replies, (Texts{L"other 2", L"1"}));
}

TEST_F(HostQuestions, TimeOutComesWithTheTickThatReachesIt)
{
    ask(1, 5s);
    m_Talk.advance(4990);
    EXPECT_TRUE(m_Replies.empty());
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, Texts{L"timed out"});
    EXPECT_EQ(m_Tasks->getCount(), 0);
}

TEST_F(HostQuestions, EndsAreReportedWithTheirClasses)
{
    struct Observer : host::QuestionObserver
    {
        void onQuestionEnd(const host::QuestionEnd& end) override { m_Ends.push_back(end); }
        std::vector<host::QuestionEnd> m_Ends;
    };
    Observer observer;
    const std::vector<host::QuestionEnd>& ends = observer.m_Ends;
    m_Talk.m_Questions->setObserver(observer);
    ask(1, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 1; }));
    ask(2, 100ms);
    m_Talk.advance(100);
    ask(3, 5s);
    m_Tasks->after(1ms, [] {});
    m_Client->close();
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 3; }));
    m_Talk.advance(10);
    ask(4, 5s);
    m_Tasks->cancel();
    ASSERT_EQ(ends.size(), 3U);
    ASSERT_TRUE(ends[0].m_Answer);
    EXPECT_TRUE(*ends[0].m_Answer == typeid(CCmdServerEchoReply));
    EXPECT_GT(ends[0].m_Time.count(), 0);
    EXPECT_FALSE(ends[1].m_Answer);
    EXPECT_EQ(ends[1].m_Why.m_Reason, Unanswered::kTimedOut);
    EXPECT_EQ(ends[2].m_Why.m_Reason, Unanswered::kEnded);
    for (const host::QuestionEnd& end : ends)
        EXPECT_EQ(end.m_Id, command_id::CCmdServerEcho);
    m_Tasks.reset();
    m_Talk.m_Questions.reset();
}

TEST_F(HostQuestions, LateAnswerIsNotGivenToALaterQuestion)
{
    ask(1, 100ms);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.advance(100);
    EXPECT_EQ(m_Replies, Texts{L"timed out"});
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 2));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
    EXPECT_EQ(m_Replies, (Texts{L"timed out", L"2"}));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdServerEchoReply (0x%04x) dropped: its question was given up (",
                  command_id::CCmdServerEchoReply);
    ASSERT_EQ(m_Talk.m_Lines.texts().size(), 1U);
    EXPECT_EQ(m_Talk.m_Lines.texts()[0].find(expected), 0U);
}

TEST_F(HostQuestions, AnswerOfACancelledQuestionIsNotGivenToALaterOne)
{
    auto owner = std::make_unique<host::Tasks>(*m_Talk.m_Questions);
    owner->ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s, [](EchoReply) { FAIL(); });
    owner.reset();
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 0);
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 2));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return !m_Replies.empty(); }));
    EXPECT_EQ(m_Replies, Texts{L"2"});
}

TEST_F(HostQuestions, AnswerWithoutAQuestionIsLogged)
{
    m_Talk.accepted().send(CCmdServerEchoReply());
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdServerEchoReply (0x%04x) dropped: no question waits for it (",
                  command_id::CCmdServerEchoReply);
    ASSERT_TRUE(m_Talk.tickUntil([&] { return !m_Talk.m_Lines.texts().empty(); }));
    EXPECT_EQ(m_Talk.m_Lines.texts()[0].find(expected), 0U);
}

TEST_F(HostQuestions, AnswerWithoutAQuestionMayHaveAHandler)
{
    int calls = 0;
    EXPECT_TRUE(
        m_Talk.m_Questions->expect<CCmdServerHelloReply>([&](CCommandSocket&, CCmdServerHelloReply&) { ++calls; }));
    bool isAnswered = false;
    m_Tasks->ask<CCmdServerHelloReply>(*m_Client, echoOf(1), 5s, [&](const auto&) { isAnswered = true; });
    m_Talk.accepted().send(CCmdServerHelloReply());
    m_Talk.accepted().send(CCmdServerHelloReply());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return calls == 1; }));
    EXPECT_TRUE(isAnswered);
}

TEST_F(HostQuestions, ClassThatIsNotExpectedIsNotAskedFor)
{
    bool isUnsent = false;
    m_Tasks->ask<CCmdServerInfoResponse>(*m_Client, echoOf(1), 5s,
                                         [&](Reply<CCmdServerInfoResponse> reply)
                                         { isUnsent = std::get<Unanswered>(reply).m_Reason == Unanswered::kNotSent; });
    EXPECT_FALSE(isUnsent) << "not from within ask()";
    m_Talk.advance(10);
    EXPECT_TRUE(isUnsent);
    EXPECT_TRUE(
        m_Talk.m_Lines.has(Log::kError, L"Question not sent: Questions does not expect CCmdServerInfoResponse"));
    EXPECT_TRUE(m_Talk.m_Asked.empty());
}

// A command that does not write itself.
class Unwritable : public CCmdServerEcho
{
public:
    bool Write(CCmdPackager*) const override { return false; }
};

TEST_F(HostQuestions, CommandThatIsNotSentTakesNoPlace)
{
    m_Tasks->ask<CCmdServerEchoReply>(*m_Client, Unwritable(), 5s,
                                      [this](const EchoReply& reply) { m_Replies.push_back(textOf(reply)); });
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
    EXPECT_EQ(m_Replies, (Texts{L"not sent", L"2"}));
}

TEST_F(HostQuestions, PlacesOfAConnectionAreBounded)
{
    for (int i = 0; i < host::Questions::kPlaceLimit; ++i)
        ask(1, 1ms);
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies.size(), static_cast<size_t>(host::Questions::kPlaceLimit)) << "given up, in their places";
    ask(2, 5s);
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies.back(), L"not sent");
    ASSERT_FALSE(m_Talk.m_Lines.texts().empty());
    EXPECT_EQ(m_Talk.m_Lines.texts().back().find(L"Question not sent: 1024 wait for their answers ("), 0U);
}

TEST_F(HostQuestions, EndByThePeerAnswersEachQuestionOnce)
{
    for (int i = 0; i < 5; ++i)
        ask(1, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 5));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.accepted().close();
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 5; }));
    EXPECT_EQ(m_Replies, (Texts{L"1", L"the connection ended", L"the connection ended", L"the connection ended",
                                L"the connection ended"}));
    m_Talk.advance(6000);
    EXPECT_EQ(m_Replies.size(), 5U);
}

TEST_F(HostQuestions, OwnCloseEndsItsQuestions)
{
    ask(1, 5s);
    m_Client->close();
    EXPECT_TRUE(m_Replies.empty());
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, Texts{L"the connection ended"});
    ask(2, 5s);
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies.size(), 2U) << "a question on a closed connection";
    EXPECT_EQ(m_Replies.back(), L"the connection ended");
}

TEST_F(HostQuestions, QuestionWaitsForTheConnectionAndEndsWithItsFailure)
{
    const unsigned short port = m_Talk.m_Loopback.m_Server->getPort();
    const test::ClientHandle client = new test::Client(m_Talk.m_ClientAnalyser.get());
    client->start(&m_Talk.m_Loopback.m_System);
    ASSERT_TRUE(client->connect(L"127.0.0.1", port, false));
    const size_t before = m_Talk.m_Loopback.m_Server->m_Accepted.size();
    m_Tasks->ask<CCmdServerEchoReply>(*client, echoOf(3), 5s,
                                      [this](const EchoReply& reply) { m_Replies.push_back(textOf(reply)); });
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Talk.m_Loopback.m_Server->m_Accepted.size() > before; }));
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return !m_Replies.empty(); }));
    EXPECT_EQ(m_Replies, Texts{L"3"});
    client->close();
    m_Talk.m_Loopback.m_Server->close();
    if (client->connect(L"127.0.0.1", port, false))
    {
        m_Tasks->ask<CCmdServerEchoReply>(*client, echoOf(4), 5s,
                                          [this](const EchoReply& reply) { m_Replies.push_back(textOf(reply)); });
        ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
        EXPECT_EQ(m_Replies.back(), L"the connection ended");
    }
    client->stop();
}

TEST_F(HostQuestions, ConnectionThatTheHostLetsGoOfEnds)
{
    ask(1, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Client->stop();
    m_Talk.m_Loopback.m_Clients.clear();
    m_Client.clear();
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, Texts{L"the connection ended"});
    CCommandSocket& end = m_Talk.accepted();
    EXPECT_TRUE(m_Talk.tickUntil([&] { return end.getConnectionState() != zet::TcpConnection::kEstablished; }))
        << "the object was released, and its connection closed";
}

TEST_F(HostQuestions, SocketThatConnectsAgainBetweenTicksHasLostItsQuestions)
{
    ask(1, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Client->close();
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Talk.m_Loopback.m_Server->getPort(), false));
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Talk.m_Loopback.m_Server->m_Accepted.size() == 2; }));
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 2; }));
    EXPECT_EQ(m_Replies, (Texts{L"the connection ended", L"2"}));
}

TEST_F(HostQuestions, ThrowingCallbackIsLoggedAndDelaysNoOther)
{
    m_Tasks->ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s, [](EchoReply) { throw std::runtime_error("one"); });
    m_Tasks->after(10ms, [] { throw std::runtime_error("two"); });
    m_Tasks->after(10ms, [this] { m_Replies.emplace_back(L"after"); });
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 2));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Replies.size() == 1; }));
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, (Texts{L"2", L"after"}));
    EXPECT_EQ(m_Talk.m_Lines.texts(), (Texts{L"Exception in a callback: one", L"Exception in a callback: two"}));
    EXPECT_EQ(m_Tasks->getCount(), 0);
}

TEST_F(HostQuestions, CallbackMayDestroyItsOwner)
{
    m_Tasks->ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s,
                                      [this](const EchoReply& reply)
                                      {
                                          m_Replies.push_back(textOf(reply));
                                          m_Tasks.reset();
                                      });
    ask(2, 5s);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 2));
    m_Talk.answer(m_Talk.accepted());
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return !m_Talk.m_Lines.texts().empty(); })) << "the dropped answer";
    EXPECT_EQ(m_Replies, Texts{L"1"});
}

TEST_F(HostQuestions, EndMayDestroyTheQuestionsAndEverythingElse)
{
    m_Tasks->ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s,
                                      [this](const EchoReply& reply)
                                      {
                                          m_Replies.push_back(textOf(reply));
                                          m_Tasks.reset();
                                          m_Talk.m_Questions.reset();
                                      });
    ask(2, 5s);
    m_Client->close();
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, Texts{L"the connection ended"});
    m_Talk.advance(6000);
    EXPECT_EQ(m_Replies.size(), 1U);
}

TEST_F(HostQuestions, QuestionAfterTheQuestionsWasDestroyedIsLogged)
{
    ask(1, 5s);
    m_Talk.m_Questions.reset();
    ask(2, 5s);
    m_Tasks->after(1ms, [] { FAIL(); });
    m_Client->close();
    m_Talk.advance(6000);
    EXPECT_TRUE(m_Replies.empty());
    Texts lines = m_Talk.m_Lines.texts();
    // After them come the ends of the connection, on both sides.
    lines.resize(std::min<size_t>(lines.size(), 2));
    EXPECT_EQ(lines,
              (Texts{L"Question not sent: its Questions was destroyed", L"No wait: its Questions was destroyed"}));
}

TEST_F(HostQuestions, AfterCallsOnceAndInOrderOfTime)
{
    m_Tasks->after(20ms, [this] { m_Replies.emplace_back(L"20"); });
    m_Tasks->after(10ms, [this] { m_Replies.emplace_back(L"10"); });
    m_Tasks->after(-5ms, [this] { m_Replies.emplace_back(L"at once"); });
    m_Tasks->after(20ms, [this] { m_Replies.emplace_back(L"20 too"); });
    m_Talk.advance(40);
    EXPECT_EQ(m_Replies, (Texts{L"at once", L"10", L"20", L"20 too"}));
}

TEST_F(HostQuestions, TimerThatStartsAnotherLetsTheTickEnd)
{
    int calls = 0;
    std::function<void()> again = [&]
    {
        ++calls;
        m_Tasks->after(0ms, again);
    };
    m_Tasks->after(0ms, again);
    m_Talk.m_Loopback.m_System.tick();
    EXPECT_EQ(calls, 1);
    m_Talk.m_Loopback.m_System.tick();
    EXPECT_EQ(calls, 2);
    m_Tasks->cancel();
    m_Talk.advance(20);
    EXPECT_EQ(calls, 2);
}

TEST_F(HostQuestions, WrappingClockKeepsTheTimes)
{
    m_Talk.m_Clock.advance(0xFFFFFFFFU - zet::getTimeTick() - 20);
    m_Talk.m_Loopback.m_System.tick();
    ask(1, 100ms);
    m_Talk.advance(90);
    EXPECT_TRUE(m_Replies.empty());
    m_Talk.advance(10);
    EXPECT_EQ(m_Replies, Texts{L"timed out"});
}

} // namespace
