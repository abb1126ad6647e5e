#include "host/pack_router.h"

#include "packaging/cmd_packager.h"
#include "packaging/wire/schema.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>

// Messages that a host adds to the social envelopes.
struct FirstOfTheHost
{
};
struct SecondOfTheHost
{
};

namespace host
{

template <>
inline constexpr bool isCarriedBy<FirstOfTheHost, CCmdSocialRequest> = true;
template <>
inline constexpr bool isCarriedBy<SecondOfTheHost, CCmdSocialRequest> = true;

} // namespace host

namespace
{

using zet::Log;

using Home = host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply>;
using Match = host::PackRouter<CCmdMatchPackRequest, CCmdMatchPackReply>;
using Profiling = host::PackRouter<CCmdProfilingPackRequest, CCmdProfilingPackReply>;
using Social = host::PackRouter<CCmdSocialRequest, CCmdSocialReply>;

const wchar_t* const kHome = L"PackRouter of CCmdHomePackRequest, CCmdHomePackReply: ";
const wchar_t* const kSocial = L"PackRouter of CCmdSocialRequest, CCmdSocialReply: ";

class HostPacks : public testing::Test
{
protected:
    bool analyse(const CCmdHead& command)
    {
        CCmdPackager packager;
        return command.Write(&packager) && m_Analyser->Analyse(m_Socket, packager);
    }
    // An envelope as a peer sends it.
    template <class Envelope, class Message>
    static std::unique_ptr<Envelope> enveloped(int number, const Message& message)
    {
        auto envelope = std::make_unique<Envelope>();
        envelope->m_PackType = static_cast<decltype(envelope->m_PackType)>(number);
        EXPECT_TRUE(message.Write(&envelope->m_PackData));
        return envelope;
    }
    bool hasError(const std::wstring& text) const { return m_Lines.has(Log::kError, text); }

    test::LogLines m_Lines;
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    zet::Unknown::Handle_T<CCommandSocket> m_Socket = CCommandSocket::createInstance(m_Analyser.get());
};

TEST_F(HostPacks, MessageReachesTheHandlerOfItsNumber)
{
    Home home;
    int unlocked = 0;
    int jumped = 0;
    EXPECT_TRUE(home.on<HomePack_UnlockGame_Request>(7, [&](CCommandSocket&, HomePack_UnlockGame_Request& message)
                                                     { unlocked = message.m_Value1; }));
    EXPECT_TRUE(
        home.on<HomePack_JumpOff_Request>(9, [&](CCommandSocket&, HomePack_JumpOff_Request&,
                                                 CCmdHomePackRequest& envelope) { jumped = envelope.m_PackIndex; }));
    ASSERT_TRUE(home.install(m_Handlers));
    EXPECT_EQ(m_Handlers.getCount(), 1) << "no reply has a handler, so replies stay unknown commands";

    HomePack_UnlockGame_Request message;
    message.m_Value1 = 42;
    EXPECT_TRUE(analyse(*enveloped<CCmdHomePackRequest>(7, message)));
    const auto envelope = enveloped<CCmdHomePackRequest>(9, HomePack_JumpOff_Request());
    envelope->m_PackIndex = 5;
    EXPECT_TRUE(analyse(*envelope));
    EXPECT_EQ(unlocked, 42);
    EXPECT_EQ(jumped, 5);
    EXPECT_TRUE(m_Lines.texts().empty());
}

TEST_F(HostPacks, AHandlerTakesTheNumberThatItsMessageHas)
{
    Home home;
    int handled = 0;
    EXPECT_TRUE(home.number<HomePack_UnlockGame_Request>(7));
    EXPECT_TRUE(
        home.on<HomePack_UnlockGame_Request>([&](CCommandSocket&, HomePack_UnlockGame_Request&) { ++handled; }));
    ASSERT_TRUE(home.install(m_Handlers));
    EXPECT_TRUE(analyse(*enveloped<CCmdHomePackRequest>(7, HomePack_UnlockGame_Request())));
    EXPECT_EQ(handled, 1);
}

TEST_F(HostPacks, AHandlerWithoutANumberIsRefusedAtStart)
{
    Home home;
    EXPECT_FALSE(home.on<HomePack_UnlockGame_Request>([](CCommandSocket&, HomePack_UnlockGame_Request&) {}));
    EXPECT_TRUE(hasError(kHome + std::wstring(L"HomePack_UnlockGame_Request has a handler but no number")));
    EXPECT_FALSE(home.install(m_Handlers));
}

TEST_F(HostPacks, NumberGivenTwiceIsRefusedAtStart)
{
    Home home;
    EXPECT_TRUE(home.on<HomePack_LoadData_Request>(1, [](CCommandSocket&, HomePack_LoadData_Request&) {}));
    EXPECT_FALSE(home.number<HomePack_LoadData_Reply>(1));
    EXPECT_TRUE(
        hasError(kHome + std::wstring(L"HomePack_LoadData_Reply has the number 1 of HomePack_LoadData_Request")));
    EXPECT_FALSE(home.install(m_Handlers));
    EXPECT_TRUE(hasError(kHome + std::wstring(L"not installed, for the errors above")));
    EXPECT_EQ(m_Handlers.getCount(), 0);
}

TEST_F(HostPacks, FamiliesOfOneEnvelopeShareTheirNumbers)
{
    Match match;
    EXPECT_TRUE(match.number<MatchPack_TakeGift_Request>(1));
    EXPECT_TRUE(match.number<MatchPackType_Login_Request>(2));
    EXPECT_TRUE(match.number<Match4Pack_FindMate_Request>(3));
    EXPECT_TRUE(match.number<CombatPack_Enroll_Request>(4));
    EXPECT_TRUE(match.number<BS4Pack_LastStandEnd_Notify>(5));
    EXPECT_TRUE(match.number<CombatRankData_Pack_Reply>(6));
    EXPECT_TRUE(match.number<BS4RankData_Pack_Reply>(7));
    const std::wstring of = L"PackRouter of CCmdMatchPackRequest, CCmdMatchPackReply: ";
    EXPECT_FALSE(match.number<Match4Pack_FindMate_Reply>(1));
    EXPECT_TRUE(hasError(of + L"Match4Pack_FindMate_Reply has the number 1 of MatchPack_TakeGift_Request"));
    EXPECT_FALSE(match.number<CombatPack_Enroll_Reply>(3));
    EXPECT_TRUE(hasError(of + L"CombatPack_Enroll_Reply has the number 3 of Match4Pack_FindMate_Request"));
    EXPECT_FALSE(match.number<BS4Pack_MatchEnd_Notify>(2));
    EXPECT_TRUE(hasError(of + L"BS4Pack_MatchEnd_Notify has the number 2 of MatchPackType_Login_Request"));
}

TEST_F(HostPacks, SecondRouterOfAnEnvelopeIsRefused)
{
    Match first;
    first.on<MatchPack_TakeGift_Request>(1, [](CCommandSocket&, MatchPack_TakeGift_Request&) {});
    Match second;
    second.on<Match4Pack_FindMate_Request>(1, [](CCommandSocket&, Match4Pack_FindMate_Request&) {});
    EXPECT_TRUE(first.install(m_Handlers));
    EXPECT_FALSE(second.install(m_Handlers));
    wchar_t expected[160];
    std::swprintf(expected, 160,
                  L"Handlers: CCmdMatchPackRequest has the id 0x%04x, which has the handler of CCmdMatchPackRequest",
                  command_id::CCmdMatchPackRequest);
    EXPECT_TRUE(hasError(expected));
}

TEST_F(HostPacks, EachOtherMistakeIsRefusedWithItsText)
{
    const auto ignore = [](CCommandSocket&, HomePack_LoadData_Request&) {};
    {
        Home home;
        EXPECT_FALSE(home.number<HomePack_LoadData_Request>(0));
        EXPECT_TRUE(hasError(
            kHome + std::wstring(L"HomePack_LoadData_Request has the number 0, which is not a valid m_PackType")));
    }
    {
        Home home;
        EXPECT_TRUE(home.number<HomePack_LoadData_Request>(-1)) << "the word is signed";
        EXPECT_TRUE(home.number<HomePack_LoadData_Request>(-1)) << "the same again";
        EXPECT_FALSE(home.number<HomePack_LoadData_Request>(2));
        EXPECT_TRUE(hasError(kHome + std::wstring(L"HomePack_LoadData_Request has two numbers, -1 and 2")));
    }
    {
        Home home;
        EXPECT_TRUE(home.on<HomePack_LoadData_Request>(1, ignore));
        EXPECT_FALSE(home.on<HomePack_LoadData_Request>(1, ignore));
        EXPECT_TRUE(hasError(kHome + std::wstring(L"HomePack_LoadData_Request has two handlers")));
    }
    {
        Home home;
        EXPECT_TRUE(home.number<HomePack_LoadData_Request>(1));
        EXPECT_FALSE(home.install(m_Handlers));
        EXPECT_TRUE(hasError(kHome + std::wstring(L"not installed, since no message has a handler")));
        EXPECT_FALSE(home.number<HomePack_LoadData_Reply>(2));
        EXPECT_TRUE(hasError(kHome + std::wstring(L"HomePack_LoadData_Reply comes after install()")));
        EXPECT_FALSE(home.install(m_Handlers));
        EXPECT_TRUE(hasError(kHome + std::wstring(L"install() was called before")));
    }
    {
        Social social;
        EXPECT_TRUE(social.number<FirstOfTheHost>(65535));
        EXPECT_FALSE(social.number<SecondOfTheHost>(65536));
        EXPECT_FALSE(social.number<SecondOfTheHost>(-1));
        EXPECT_TRUE(hasError(kSocial + std::wstring(L"SecondOfTheHost has the number 65536, which is not a valid "
                                                    L"m_PackType")));
    }
    {
        Social social;
        EXPECT_FALSE(social.number<CmdSocialReleaseAPIRequest>(5));
        EXPECT_TRUE(hasError(kSocial + std::wstring(L"CmdSocialReleaseAPIRequest has the number 2 of its own, and "
                                                    L"cannot have 5")));
        EXPECT_FALSE(social.install(m_Handlers));
    }
}

TEST_F(HostPacks, UnknownNumberIsDroppedInOneLine)
{
    Home home;
    home.on<HomePack_LoadData_Request>(1, [](CCommandSocket&, HomePack_LoadData_Request&) { FAIL(); });
    home.install(m_Handlers);
    analyse(*enveloped<CCmdHomePackRequest>(2, HomePack_JumpOff_Request()));
    EXPECT_EQ(m_Lines.texts(),
              std::vector<std::wstring>{L"CCmdHomePackRequest dropped: no message with the number 2 has a handler ()"});
}

TEST_F(HostPacks, UnreadMessageIsDroppedInOneLine)
{
    Home home;
    home.on<HomePack_UnlockGame_Request>(1, [](CCommandSocket&, HomePack_UnlockGame_Request&) { FAIL(); });
    home.install(m_Handlers);
    CCmdHomePackRequest envelope;
    envelope.m_PackType = 1;
    envelope.m_PackData.Write(static_cast<unsigned char>(1));
    analyse(envelope);
    EXPECT_EQ(m_Lines.texts(),
              std::vector<std::wstring>{L"HomePack_UnlockGame_Request dropped: number 1, it does not fit 1 bytes ()"});
}

TEST_F(HostPacks, BytesLeftOverAreLoggedOnceAndTheMessageIsHandled)
{
    Home home;
    int value = 0;
    home.on<HomePack_UnlockGame_Request>(1, [&](CCommandSocket&, HomePack_UnlockGame_Request& message)
                                         { value = message.m_Value1; });
    home.install(m_Handlers);
    HomePack_UnlockGame_Request message;
    message.m_Value1 = 6;
    const auto envelope = enveloped<CCmdHomePackRequest>(1, message);
    const int size = envelope->m_PackData.GetDataSize() + 2;
    envelope->m_PackData.Write(short(1));
    analyse(*envelope);
    EXPECT_EQ(value, 6);
    wchar_t expected[128];
    std::swprintf(expected, 128, L"HomePack_UnlockGame_Request: number 1, 2 of %d bytes are left over ()", size);
    EXPECT_EQ(m_Lines.texts(), std::vector<std::wstring>{expected});
}

TEST_F(HostPacks, MessageThatTwoEnvelopesCarryIsHandledInBoth)
{
    Profiling profiling;
    int calls = 0;
    profiling.on<CmdProfilingPack_GetMaxValues>(1,
                                                [&](CCommandSocket&, CmdProfilingPack_GetMaxValues&, auto& envelope)
                                                {
                                                    ++calls;
                                                    EXPECT_EQ(envelope.m_PackType, 1);
                                                });
    ASSERT_TRUE(profiling.install(m_Handlers));
    analyse(*enveloped<CCmdProfilingPackRequest>(1, CmdProfilingPack_GetMaxValues()));
    analyse(*enveloped<CCmdProfilingPackReply>(1, CmdProfilingPack_GetMaxValues()));
    EXPECT_EQ(calls, 2);
}

TEST_F(HostPacks, DestroyedRouterIsNotCalled)
{
    auto home = std::make_unique<Home>();
    home->on<HomePack_LoadData_Request>(1, [](CCommandSocket&, HomePack_LoadData_Request&) { FAIL(); });
    home->install(m_Handlers);
    home.reset();
    analyse(*enveloped<CCmdHomePackRequest>(1, HomePack_LoadData_Request()));
    EXPECT_EQ(m_Lines.texts(),
              std::vector<std::wstring>{L"CCmdHomePackRequest dropped: no message with the number 1 has a handler ()"});
}

TEST_F(HostPacks, DispatchAllocatesNothing)
{
    Home home;
    int calls = 0;
    home.on<HomePack_CountdownTime_Request>(1, [&](CCommandSocket&, HomePack_CountdownTime_Request&) { ++calls; });
    home.install(m_Handlers);
    CCmdPackager packager;
    ASSERT_TRUE(enveloped<CCmdHomePackRequest>(1, HomePack_CountdownTime_Request())->Write(&packager));
    const test::AllocationCount count;
    for (int i = 0; i < 10; ++i)
    {
        packager.Reset();
        m_Analyser->Analyse(m_Socket, packager);
    }
    EXPECT_EQ(count.blocks(), 0);
    EXPECT_EQ(calls, 10);
}

TEST_F(HostPacks, TablePrintsAsJson)
{
    Profiling profiling;
    profiling.number<CmdProfilingPack_SubmitMaxValues>(4);
    profiling.on<CmdProfilingPack_GetMaxValues>(2, [](CCommandSocket&, CmdProfilingPack_GetMaxValues&) {});
    EXPECT_EQ(std::wstring(profiling.toJson().getBuffer()),
              L"{\"envelopes\":[\"CCmdProfilingPackRequest\",\"CCmdProfilingPackReply\"],\"messages\":["
              L"{\"number\":2,\"message\":\"CmdProfilingPack_GetMaxValues\",\"envelopes\":"
              L"[\"CCmdProfilingPackRequest\",\"CCmdProfilingPackReply\"],\"handled\":true},"
              L"{\"number\":4,\"message\":\"CmdProfilingPack_SubmitMaxValues\",\"envelopes\":"
              L"[\"CCmdProfilingPackRequest\",\"CCmdProfilingPackReply\"],\"handled\":false}]}");
}

TEST_F(HostPacks, MessageWithoutNumberIsNotSent)
{
    const Home home;
    EXPECT_FALSE(home.send(*m_Socket, HomePack_LoadData_Request()));
    EXPECT_TRUE(hasError(kHome + std::wstring(L"HomePack_LoadData_Request is not sent, since it has no number")));
}

TEST_F(HostPacks, MessageThatDoesNotFitItsEnvelopeIsNotSent)
{
    Profiling profiling;
    profiling.number<CmdProfilingPack_SubmitMaxValues>(1);
    host::PackRouter<CCmdSportPackRequest, CCmdSportPackReply, CCmdSportPackNotify> sport;
    sport.number<CmdStartSessionAction>(1);
    CmdStartSessionAction action;
    action.m_Text1 = std::wstring(40000, L'x').c_str();
    EXPECT_FALSE(sport.send(*m_Socket, action));
    EXPECT_TRUE(hasError(L"CmdStartSessionAction is not sent: it does not fit its envelope"));
}

TEST_F(HostPacks, RankBoardReachesItsHandler)
{
    Match match;
    int value = 0;
    EXPECT_TRUE(match.on<BS4RankData_Pack_Reply>(4, [&](CCommandSocket&, BS4RankData_Pack_Reply& board)
                                                 { value = board.m_CombatRankDatas2[99].m_Value1; }));
    ASSERT_TRUE(match.install(m_Handlers));
    const auto board = std::make_unique<BS4RankData_Pack_Reply>();
    board->m_CombatRankDatas2[99].m_Value1 = 8;
    EXPECT_TRUE(analyse(*enveloped<CCmdMatchPackReply>(4, *board)));
    EXPECT_EQ(value, 8);
    EXPECT_TRUE(m_Lines.texts().empty());
}

TEST_F(HostPacks, SocialReplyOfAnotherPairIsNotSent)
{
    const Social social;
    CCmdSocialRequest request;
    request.m_PackType = kSocialOccupyAPI;
    EXPECT_FALSE(social.reply(*m_Socket, request, CmdSocialReleaseAPIReply()));
    EXPECT_TRUE(hasError(L"CmdSocialReleaseAPIReply is not sent: it has the number 2, and its request 1"));
    CmdSocialReleaseAPIRequest release;
    release.setPackType(0);
    EXPECT_FALSE(social.send(*m_Socket, release));
    EXPECT_TRUE(hasError(kSocial + std::wstring(L"CmdSocialReleaseAPIRequest is not sent, since it has no number")));
}

TEST(HostPacksOverTcp, SocialMessagesHaveTheirNumbersAndEnvelopesAreFilled)
{
    const auto serverAnalyser = std::make_unique<CCmdAnalyserSocket>();
    const auto clientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers serverHandlers(*serverAnalyser);
    host::Handlers clientHandlers(*clientAnalyser);
    Social server;
    server.on<CmdSocialCreateAccessTokenRequest>(
        [&](CCommandSocket& socket, CmdSocialCreateAccessTokenRequest&, CCmdSocialRequest& request)
        {
            EXPECT_EQ(request.m_PackType, 3);
            EXPECT_EQ(request.m_Extra, L"of the club");
            EXPECT_TRUE(server.reply(socket, request, CmdSocialCreateAccessTokenReply(),
                                     [](CCmdSocialReply& envelope)
                                     {
                                         envelope.m_Error = kSocialErrorNoToken;
                                         envelope.m_Msg = getSocialErrMsg(kSocialErrorNoToken);
                                     }));
        });
    ASSERT_TRUE(server.install(serverHandlers));
    Social client;
    int replies = 0;
    client.on<CmdSocialCreateAccessTokenReply>(
        [&](CCommandSocket&, CmdSocialCreateAccessTokenReply&, CCmdSocialReply& reply)
        {
            ++replies;
            EXPECT_EQ(reply.m_PackType, 3);
            EXPECT_EQ(reply.m_PackIndex, 41);
            EXPECT_EQ(reply.m_Error, kSocialErrorNoToken);
            EXPECT_EQ(reply.m_Msg, getSocialErrMsg(kSocialErrorNoToken));
            EXPECT_EQ(reply.m_VerifySeed, CCmdSocialReply().m_VerifySeed) << "the seed of the replying process";
        });
    ASSERT_TRUE(client.install(clientHandlers));

    test::Loopback loopback(serverAnalyser.get());
    const test::ClientHandle socket = loopback.connect(clientAnalyser.get());
    ASSERT_TRUE(socket);
    EXPECT_TRUE(client.send(*socket, CmdSocialCreateAccessTokenRequest(),
                            [](CCmdSocialRequest& envelope)
                            {
                                envelope.m_PackIndex = 41;
                                envelope.m_VerifySeed = L"another seed";
                                envelope.m_Extra = L"of the club";
                            }));
    EXPECT_TRUE(test::tickUntil(loopback.m_System, [&] { return replies == 1; }));
}

// Compares isReadIntoElements with the orders of all messages.
TEST(HostPackFamilies, MessagesThatAreReadIntoTheirElementsAreMarked)
{
    int marked = 0;
    const auto compare = [&](const wire::Schema& schema, bool isMarked)
    {
        bool intoElements = false;
        for (const wire::Field& field : schema.fields)
            intoElements |= field.kind == wire::Kind::kList && field.how.into == wire::Into::kSlots;
        EXPECT_EQ(isMarked, intoElements) << schema.name;
        marked += isMarked ? 1 : 0;
    };
#define MESSAGE(Envelope, Class) compare(Class::Wire(), host::isReadIntoElements<Class>);
#define EITHER_WAY(Request, Reply, Class) MESSAGE(Request, Class)
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY
    EXPECT_EQ(marked, 1);
}

TEST(HostPacksOverTcp, RequestIsSentAndItsReplyKeepsTheHead)
{
    const auto serverAnalyser = std::make_unique<CCmdAnalyserSocket>();
    const auto clientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers serverHandlers(*serverAnalyser);
    host::Handlers clientHandlers(*clientAnalyser);
    // Both sides use the same numbers.
    const auto state = [](Home& home)
    {
        home.number<HomePack_UnlockGame_Request>(1);
        home.number<HomePack_UnlockGame_Reply>(2);
    };
    Home server;
    state(server);
    server.on<HomePack_UnlockGame_Request>(
        1,
        [&](CCommandSocket& socket, HomePack_UnlockGame_Request&, CCmdHomePackRequest& envelope)
        {
            envelope.m_PackIndex = 77;
            envelope.m_AccountName = L"runner";
            envelope.SetClientIndex(5);
            EXPECT_TRUE(server.reply(socket, envelope, HomePack_UnlockGame_Reply()));
        });
    ASSERT_TRUE(server.install(serverHandlers));
    Home client;
    state(client);
    int replies = 0;
    client.on<HomePack_UnlockGame_Reply>(2,
                                         [&](CCommandSocket&, HomePack_UnlockGame_Reply&, CCmdHomePackReply& envelope)
                                         {
                                             ++replies;
                                             EXPECT_EQ(envelope.m_PackIndex, 77);
                                             EXPECT_EQ(envelope.m_AccountName, L"runner");
                                             EXPECT_EQ(envelope.GetClientIndex(), 5);
                                         });
    ASSERT_TRUE(client.install(clientHandlers));

    test::Loopback loopback(serverAnalyser.get());
    const test::ClientHandle socket = loopback.connect(clientAnalyser.get());
    ASSERT_TRUE(socket);
    EXPECT_TRUE(client.send(*socket, HomePack_UnlockGame_Request()));
    EXPECT_TRUE(test::tickUntil(loopback.m_System, [&] { return replies == 1; }));
}

} // namespace
