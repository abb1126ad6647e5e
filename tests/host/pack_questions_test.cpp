#include "host/pack_questions.h"

#include "host/tasks.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using namespace std::chrono_literals;
using zet::Log;

using Home = host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply>;
using Social = host::PackRouter<CCmdSocialRequest, CCmdSocialReply>;
using Loaded = host::PackAnswer<HomePack_LoadData_Reply>;
using Countdown = host::PackAnswer<HomePack_CountdownTime_Reply>;
using Occupied = host::PackAnswer<CmdSocialOccupyAPIReply>;

void setNumbers(Home& home)
{
    home.number<HomePack_LoadData_Request>(1);
    home.number<HomePack_LoadData_Reply>(2);
    home.number<HomePack_CountdownTime_Reply>(3);
}

// A server that counts down and then loads, a social server without a free slot, and their client.
class HostPackQuestions : public testing::Test
{
protected:
    HostPackQuestions()
    {
        setNumbers(m_ServerHome);
        setNumbers(m_Home);
        m_ServerHome.on<HomePack_LoadData_Request>(
            [this](CCommandSocket& socket, HomePack_LoadData_Request&, CCmdHomePackRequest& envelope)
            {
                m_ServerHome.send(socket, HomePack_CountdownTime_Reply());
                HomePack_LoadData_Reply reply;
                reply.m_HomeData.m_RushLife = 3;
                m_ServerHome.reply(socket, envelope, reply);
            });
        m_ServerSocial.on<CmdSocialOccupyAPIRequest>(
            [this](CCommandSocket& socket, CmdSocialOccupyAPIRequest&, CCmdSocialRequest& envelope)
            {
                m_ServerSocial.reply(socket, envelope, CmdSocialOccupyAPIReply(),
                                     [](CCmdSocialReply& reply)
                                     {
                                         reply.m_Error = kSocialErrorNoFreeApi;
                                         reply.m_Msg = getSocialErrMsg(kSocialErrorNoFreeApi);
                                     });
            });
        EXPECT_TRUE(m_ServerHome.install(m_ServerHandlers) && m_ServerSocial.install(m_ServerHandlers));
        EXPECT_TRUE(host::expectPack<HomePack_LoadData_Reply>(m_Home, m_Questions));
        EXPECT_TRUE(host::expectPack<HomePack_CountdownTime_Reply>(
            m_Home, m_Questions, [this](CCommandSocket&, Countdown& notice) { m_Notices += notice.m_ID != 0; }));
        EXPECT_TRUE(host::expectPack<CmdSocialOccupyAPIReply>(m_Social, m_Questions));
        EXPECT_TRUE(m_Home.install(m_ClientHandlers) && m_Social.install(m_ClientHandlers));
        EXPECT_TRUE(m_Client);
    }
    template <class Condition>
    bool tickUntil(Condition condition)
    {
        return test::tickUntil(m_Loopback.m_System, condition);
    }

    test::LogLines m_Lines;
    std::unique_ptr<CCmdAnalyserSocket> m_ServerAnalyser = std::make_unique<CCmdAnalyserSocket>();
    std::unique_ptr<CCmdAnalyserSocket> m_ClientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_ServerHandlers{*m_ServerAnalyser};
    host::Handlers m_ClientHandlers{*m_ClientAnalyser};
    Home m_ServerHome;
    Home m_Home;
    Social m_ServerSocial;
    Social m_Social;
    int m_Notices = 0;
    test::Loopback m_Loopback{m_ServerAnalyser.get()};
    host::Questions m_Questions{m_ClientHandlers, m_Loopback.m_System};
    host::Tasks m_Tasks{m_Questions};
    test::ClientHandle m_Client = m_Loopback.connect(m_ClientAnalyser.get());
};

TEST_F(HostPackQuestions, OnlyTheNamedMessageIsTheAnswer)
{
    HomePack_LoadData_Request request;
    request.m_Account.m_AccountName = L"Ann";
    int lives = 0;
    m_Tasks.ask<Loaded>(*m_Client,
                        host::packed(m_Home, request,
                                     [](CCmdHomePackRequest& envelope)
                                     {
                                         envelope.m_PackIndex = 41;
                                         envelope.m_AccountName = L"Ann";
                                     }),
                        5s,
                        [&](const host::Reply<Loaded>& reply)
                        {
                            const auto* const loaded = std::get_if<Loaded>(&reply);
                            ASSERT_TRUE(loaded);
                            lives = loaded->m_Message.m_HomeData.m_RushLife;
                            EXPECT_EQ(loaded->m_PackIndex, 41);
                            EXPECT_EQ(loaded->m_AccountName, L"Ann");
                            EXPECT_EQ(loaded->GetID(), CCmdHomePackReply().GetID());
                        });
    ASSERT_TRUE(tickUntil([&] { return lives != 0; }));
    EXPECT_EQ(lives, 3);
    EXPECT_EQ(m_Notices, 1) << "the message before it in the same envelope went to its handler";
    EXPECT_TRUE(m_Lines.texts().empty());
}

TEST_F(HostPackQuestions, TheErrorOfASocialReplyComesWithTheAnswer)
{
    int error = 0;
    m_Tasks.ask<Occupied>(*m_Client, host::packed(m_Social, CmdSocialOccupyAPIRequest()), 5s,
                          [&](const host::Reply<Occupied>& reply)
                          {
                              const auto* const occupied = std::get_if<Occupied>(&reply);
                              ASSERT_TRUE(occupied);
                              error = occupied->m_Error;
                              EXPECT_EQ(occupied->m_Msg, getSocialErrMsg(kSocialErrorNoFreeApi));
                          });
    ASSERT_TRUE(tickUntil([&] { return error != 0; }));
    EXPECT_EQ(error, kSocialErrorNoFreeApi);
}

TEST_F(HostPackQuestions, AMessageThatWasNotAskedForIsLogged)
{
    ASSERT_TRUE(m_ServerHome.send(*m_Loopback.accepted(), HomePack_LoadData_Reply()));
    ASSERT_TRUE(tickUntil([&] { return !m_Lines.texts().empty(); }));
    zet::String_T<wchar_t> line;
    line.format(L"HomePack_LoadData_Reply (0x%04x) dropped: no question waits for it (%s)", CCmdHomePackReply().GetID(),
                m_Client->getPeerName());
    EXPECT_TRUE(m_Lines.has(Log::kWarning, line.getBuffer()));
}

TEST_F(HostPackQuestions, AMessageWithoutANumberIsNotSent)
{
    bool isReplied = false;
    m_Tasks.ask<Loaded>(*m_Client, host::packed(m_Home, HomePack_JumpOff_Request()), 5s,
                        [&](const host::Reply<Loaded>& reply)
                        {
                            const auto* const unanswered = std::get_if<host::Unanswered>(&reply);
                            ASSERT_TRUE(unanswered);
                            EXPECT_EQ(unanswered->m_Reason, host::Unanswered::kNotSent);
                            isReplied = true;
                        });
    ASSERT_TRUE(tickUntil([&] { return isReplied; }));
    EXPECT_TRUE(m_Lines.has(Log::kError, L"PackRouter of CCmdHomePackRequest, CCmdHomePackReply: "
                                         L"HomePack_JumpOff_Request is not sent, since it has no number"));
}

#ifdef __cpp_impl_coroutine

TEST_F(HostPackQuestions, ACoroutineAwaitsOneMessageAfterTheOther)
{
    int lives = 0;
    m_Tasks.start(
        [&]() -> host::Task
        {
            for (int i = 0; i < 3; ++i)
            {
                const HomePack_LoadData_Request request;
                const auto reply = co_await host::askPack<HomePack_LoadData_Reply>(m_Home, *m_Client, request, 5s);
                if (const auto* const loaded = std::get_if<Loaded>(&reply))
                    lives += loaded->m_Message.m_HomeData.m_RushLife;
            }
        });
    ASSERT_TRUE(tickUntil([&] { return lives == 9; }));
    EXPECT_EQ(m_Notices, 3);
}

#endif

} // namespace
