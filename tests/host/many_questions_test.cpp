// Two hundred questions at once whose answers, time-outs, cancellations and ends of connections come in random orders.
#include "host/tasks.h"

#include "tests/host/conversation.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace
{

using namespace std::chrono_literals;
using test::ClientHandle;
using test::echoOf;
using test::EchoReply;
using test::textOf;

constexpr int kQuestions = 200;
constexpr int kConnections = 8;

// The outcome of one question. Its callable or coroutine holds one count of the token, so that a leak shows.
struct Outcome
{
    std::wstring m_Text;
    int m_Replies = 0;
    bool m_IsCancelled = false;
    size_t m_Connection = 0;
    std::shared_ptr<int> m_Token = std::make_shared<int>(0);
};

#ifdef __cpp_impl_coroutine
host::Task askFor(CCommandSocket& socket, unsigned long number, std::chrono::milliseconds timeOut, Outcome& outcome)
{
    const std::shared_ptr<int> token = outcome.m_Token;
    const auto reply = co_await host::ask<CCmdServerEchoReply>(socket, echoOf(number), timeOut);
    ++outcome.m_Replies;
    outcome.m_Text = textOf(reply);
    // The test may cancel the task during this sleep.
    co_await host::sleep(50ms);
}
#endif

class HostManyQuestions : public testing::TestWithParam<unsigned int>
{
protected:
    size_t pick(size_t count) { return m_Random() % count; }

    void start(size_t number)
    {
        Outcome& outcome = m_Outcomes[number];
        outcome.m_Connection = pick(kConnections);
        CCommandSocket& socket = *m_Clients[outcome.m_Connection];
        const std::chrono::milliseconds timeOut(20 + pick(20) * 100);
        m_Owners.push_back(std::make_unique<host::Tasks>(*m_Talk.m_Questions));
#ifdef __cpp_impl_coroutine
        if (pick(2) == 0)
            return m_Owners.back()->start(askFor(socket, number, timeOut, outcome));
#endif
        m_Owners.back()->ask<CCmdServerEchoReply>(socket, echoOf(number), timeOut,
                                                  [&outcome, token = outcome.m_Token](const EchoReply& reply)
                                                  {
                                                      ++outcome.m_Replies;
                                                      outcome.m_Text = textOf(reply);
                                                  });
    }
    void cancel(size_t number)
    {
        if (!m_Owners[number])
            return;
        m_Outcomes[number].m_IsCancelled = m_Outcomes[number].m_Replies == 0;
        m_Owners[number].reset();
    }
    void answerSome(size_t connection)
    {
        CCommandSocket& end = *m_Ends[connection];
        for (size_t left = pick(5); left > 0 && !m_Talk.m_Asked[&end].empty() && !end.isInvalid(); --left)
            m_Talk.answer(end);
    }
    void closeOne(size_t connection)
    {
        if (pick(2) == 0)
            m_Clients[connection]->close();
        else
            m_Ends[connection]->close();
        m_IsClosed[connection] = true;
    }

    std::mt19937 m_Random{GetParam()};
    test::Conversation m_Talk;
    std::vector<ClientHandle> m_Clients;
    std::vector<ClientHandle> m_Ends;
    bool m_IsClosed[kConnections] = {};
    std::vector<Outcome> m_Outcomes{kQuestions};
    std::vector<std::unique_ptr<host::Tasks>> m_Owners;
};

TEST_P(HostManyQuestions, EachGetsExactlyOneReplyOrIsCancelled)
{
    for (int i = 0; i < kConnections; ++i)
    {
        m_Clients.push_back(m_Talk.connect());
        ASSERT_TRUE(m_Clients.back());
        m_Ends.push_back(m_Talk.m_Loopback.accepted());
    }
    for (size_t i = 0; i < kQuestions; ++i)
        start(i);
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), kQuestions);

    // One connection surely ends with open questions.
    const int firstEnd = static_cast<int>(pick(10));
    for (int step = 0; step < 600 && m_Talk.m_Questions->getOpenCount() > 0; ++step)
    {
        if (step == firstEnd)
            closeOne(0);
        switch (pick(8))
        {
        case 0:
            m_Talk.advance(static_cast<unsigned int>(pick(8) * 10));
            break;
        case 1:
            cancel(pick(kQuestions));
            break;
        case 2:
            if (pick(12) == 0)
                closeOne(pick(kConnections));
            break;
        default:
            answerSome(pick(kConnections));
        }
        m_Talk.m_Loopback.m_System.tick();
    }
    m_Talk.advance(3000);

    std::map<std::wstring, int> counts;
    for (size_t i = 0; i < kQuestions; ++i)
    {
        const Outcome& outcome = m_Outcomes[i];
        EXPECT_EQ(outcome.m_Replies, outcome.m_IsCancelled ? 0 : 1) << "question " << i;
        EXPECT_EQ(outcome.m_Token.use_count(), 1) << "question " << i << " is still held";
        if (outcome.m_IsCancelled)
            ++counts[L"cancelled"];
        else if (outcome.m_Text == L"the connection ended")
        {
            ++counts[L"ended"];
            EXPECT_TRUE(m_IsClosed[outcome.m_Connection]);
        }
        else if (outcome.m_Text == L"timed out")
            ++counts[L"timed out"];
        else
        {
            ++counts[L"answered"];
            EXPECT_EQ(outcome.m_Text, std::to_wstring(i)) << "the answer of another question";
        }
    }
    for (const wchar_t* kind : {L"cancelled", L"ended", L"timed out", L"answered"})
        EXPECT_GT(counts[kind], 0);
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 0);
    for (const auto& owner : m_Owners)
        EXPECT_TRUE(!owner || owner->getCount() == 0);
}

INSTANTIATE_TEST_SUITE_P(Orders, HostManyQuestions, testing::Range(1U, 13U));

// Ends the connections, the owners and the Questions in each order.
TEST(HostQuestionsEnd, NothingIsHeldWhateverGoesFirst)
{
    for (int order = 0; order < 6; ++order)
    {
        test::Conversation talk;
        std::vector<ClientHandle> clients = {talk.connect(), talk.connect()};
        ASSERT_TRUE(clients[0] && clients[1]);
        const auto token = std::make_shared<int>(0);
        auto tasks = std::make_unique<host::Tasks>(*talk.m_Questions);
        int replies = 0;
        for (unsigned long i = 0; i < 20; ++i)
            tasks->ask<CCmdServerEchoReply>(*clients[i % 2], echoOf(i), 5s,
                                            [&replies, token](EchoReply) { ++replies; });
        int steps[3] = {order / 2, (order / 2 + 1 + order % 2) % 3, (order / 2 + 2 - order % 2) % 3};
        for (const int step : steps)
            switch (step)
            {
            case 0:
                for (const ClientHandle& client : clients)
                    client->close();
                talk.advance(10);
                break;
            case 1:
                tasks.reset();
                break;
            default:
                talk.m_Questions.reset();
            }
        EXPECT_EQ(token.use_count(), 1) << "order " << order;
        EXPECT_EQ(replies, steps[0] == 0 ? 20 : 0) << "order " << order;
        for (const ClientHandle& client : clients)
            EXPECT_LE(client->getRefCount(), 3) << "held by the test, the loopback and the System";
    }
}

} // namespace
