#include "examples/arena/player/tools_script.h"

#include "commands/login.h"
#include "commands/system_info.h"
#include "examples/arena/player/line.h"
#include "examples/arena/protocol/platform_codes.h"
#include "runtime/system_cmd_info.h"

namespace arena::player
{

using host::askPack;
using namespace std::chrono_literals;

namespace
{

constexpr wchar_t kFirstDay[] = L"2026-1-1 00:00:00";
constexpr wchar_t kLastDay[] = L"2026-12-31 00:00:00";
// How often a player looks whether an API is free, every 50 ms.
constexpr int kLooks = 1200;

template <class Request>
Request reportOf(const wchar_t* first, const wchar_t* last)
{
    Request request;
    request.m_Text1 = first;
    request.m_Text2 = last;
    return request;
}

// A report with a row, and the refusal of one whose days are in the wrong order.
template <class Request, class Reply>
void askReport(PackTalk<QueryToolPacks>& talk, const char* what)
{
    talk.template done<Reply>(reportOf<Request>(kFirstDay, kLastDay), what,
                              [](const Reply& reply)
                              {
                                  if constexpr (requires { reply.m_Column1; })
                                      return reply.m_Column1.size() == 1;
                                  else
                                      return true;
                              });
    talk.template refused<Reply>(reportOf<Request>(kLastDay, kFirstDay), what);
}

} // namespace

host::Task playProfiling(PackAccount& player, PackClient& packs)
{
    ProfilingPacks& profiling = packs.m_Profiling;
    CCommandSocket& socket = player.getSocket();
    using Submitted = host::PackAnswer<CmdProfilingPack_SubmitMaxValues>;
    using Maxima = host::PackAnswer<CmdProfilingPack_GetMaxValues>;

    // What is not valid comes back.
    CmdProfilingPack_SubmitMaxValues submit;
    cProfilingMaxValue& frame = submit.m_ProfilingMaxValues[L"frame"];
    frame.m_Name = L"frame";
    frame.m_Value1 = 16;
    submit.m_ProfilingMaxValues[L"nothing"].m_Name = L"nothing";
    const auto submitting = co_await host::ask<Submitted>(
        socket, host::packed<CCmdProfilingPackRequest>(profiling, packs.sent(player, submit)), kPatience);
    if (const auto* const refused = packs.received(player, submitting))
    {
        expect(player, refused->m_ProfilingMaxValues.size() == 1, "only the invalid value comes back");
        for (const auto& [name, value] : refused->m_ProfilingMaxValues)
            expectRefused(player, name, "a quantity without a value");
    }
    const CmdProfilingPack_GetMaxValues get;
    const auto getting = co_await host::ask<Maxima>(
        socket, host::packed<CCmdProfilingPackRequest>(profiling, packs.sent(player, get)), kPatience);
    if (const auto* const maxima = packs.received(player, getting))
        expect(player,
               maxima->m_ProfilingMaxValues.count(L"frame") == 1 &&
                   maxima->m_ProfilingMaxValues.at(L"frame").m_Value1 >= 16 &&
                   maxima->m_ProfilingMaxValues.count(L"nothing") == 0,
               "the submitted maximum comes back");
}

host::Task playMonitoring(PackAccount& player, PackClient&)
{
    CCommandSocket& socket = player.getSocket();
    const auto telling = co_await host::ask<CCmdSystemInfoReply>(socket, CCmdSystemInfoRequest(), kPatience);
    const auto* const told = std::get_if<CCmdSystemInfoReply>(&telling);
    if (!told)
    {
        player.fail("CCmdSystemInfoRequest: no answer");
        co_return;
    }
    if (told->m_SystemInfos.empty())
    {
        player.note("refused: the statistics of the platform");
        co_return;
    }
    SystemCmdInfo statistics;
    statistics.FromJsonString(told->m_SystemInfos.front().m_Text2);
    expect(player, statistics.GetConnectCount() > 0, "this connection is in the statistics");
    CCmdProfilerEnable enable;
    enable.m_Enable = 1;
    expect(player, socket.send(enable), "the profiler is enabled");
    enable.m_Enable = 0;
    const auto measuring = co_await host::ask<CCmdProfilerUsage>(socket, enable, kPatience);
    const auto* const usage = std::get_if<CCmdProfilerUsage>(&measuring);
    expect(player, usage && usage->m_Floats.size() == 1 && usage->m_Values.size() == 2, "a measurement");
}

host::Task playQueryTool(PackAccount& player, PackClient& packs)
{
    QueryToolPacks& tool = packs.m_QueryTool;
    CCommandSocket& socket = player.getSocket();
    PackTalk talk(player, packs, tool);

    talk.refused<QT_OverviewPay_Reply>(reportOf<QT_OverviewPay_Request>(kFirstDay, kLastDay),
                                       "a report before the tool's login");
    QT_Login_Request stranger;
    stranger.m_Text1 = L"a stranger";
    talk.refused<QT_Login_Reply>(stranger, "the tool's login by another name",
                                 [](const QT_Login_Reply& reply) { return !reply.m_Flag1; });
    QT_Login_Request logIn;
    logIn.m_Text1 = player.getName();
    const auto loggingIn = co_await askPack<QT_Login_Reply>(tool, socket, packs.sent(player, logIn), kPatience);
    const auto* const login = packs.received(player, loggingIn);
    if (!login || !login->m_Flag1)
    {
        if (login)
            expectRefused(player, login->m_Text1, "the tool's login by a player");
        co_return;
    }
    QT_CheckVersion_Request version;
    version.m_Version = L"1.0";
    talk.done<QT_CheckVersion_Reply>(version, "the version",
                                     [](const QT_CheckVersion_Reply& reply) { return reply.m_Flag1; });
    version.m_Version = L"0.9";
    talk.refused<QT_CheckVersion_Reply>(version, "another version");
    QT_SendProductType product;
    product.m_ProductType = 3;
    const auto confirming = co_await host::ask<host::PackAnswer<QT_SendProductType>>(
        socket, host::packed<CCmdQueryToolRequest>(tool, packs.sent(player, product)), kPatience);
    if (const auto* const confirmed = packs.received(player, confirming))
        expect(player, confirmed->m_ProductType == 3, "the product is confirmed");
    QT_InsertMac_Request macs;
    macs.m_Texts.emplace_back(L"00-11-22-33-44-55");
    talk.send(macs);
    talk.done<QT_QueryCondition_Reply>(RequestFor<QT_QueryCondition_Reply>(), "the conditions",
                                       [](const QT_QueryCondition_Reply& reply)
                                       { return reply.m_List1.size() == 3 && !reply.m_List2.empty(); });
    const RequestFor<QT_TableTimeFrom_Reply> from;
    const auto dating = co_await askPack<QT_TableTimeFrom_Reply>(tool, socket, packs.sent(player, from), kPatience);
    if (const auto* const days = packs.received(player, dating))
        expect(player, !days->m_Text1.isEmpty(), "the tables have a first day");

    askReport<QT_OverviewPay_Request, QT_OverviewPay_Reply>(talk, "the payments at a glance");
    askReport<QT_Payment_Pay_Request, QT_Payment_Pay_Reply>(talk, "the payments");
    askReport<QT_Payment_Consumption_Request, QT_Payment_Consumption_Reply>(talk, "the consumption");
    askReport<QT_Nib2Nib3_Pay_Request, QT_Nib2Nib3_Pay_Reply>(talk, "the payments of two versions");
    askReport<QT_OnlineQuery_Hours24Online_Request, QT_OnlineQuery_Hours24Online_Reply>(talk, "the players by hours");
    askReport<QT_OnlineQuery_DaysOnline_Request, QT_OnlineQuery_DaysOnline_Reply>(talk, "the players by days");
    askReport<QT_BstFmy3_DailyStats_Request, QT_BstFmy3_DailyStats_Reply>(talk, "the event by days");
    askReport<QT_BstFmy3_EventTrigger_Request, QT_BstFmy3_EventTrigger_Reply>(talk, "what the event triggered");
    askReport<QT_BstFmy3_PropsOutput_Request, QT_BstFmy3_PropsOutput_Reply>(talk, "the props of the event");
    askReport<QT_BstFmy3_WeekMatchStats_Request, QT_BstFmy3_WeekMatchStats_Reply>(talk, "the event by weeks");
    askReport<QT_BstFmy3_ZillionaireProps_Request, QT_BstFmy3_ZillionaireProps_Reply>(talk, "the board game's props");
    askReport<QT_BstFmy3_ZillionaireStats_Request, QT_BstFmy3_ZillionaireStats_Reply>(talk, "the board game");

    // The tool ends with the operator's login, though the connection goes on.
    zet::Uuid id;
    zet::uuid_create(id);
    CCmdBaseLogin other;
    other.m_Texts[protocol::kLoginName] = idText(id);
    other.m_Texts[protocol::kLoginPassword] = L"a password";
    const auto entered = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(socket, other, kPatience);
    expect(player, std::holds_alternative<CCmdLoginSuccess>(entered), "another account logs in on the connection");
    talk.refused<QT_OverviewPay_Reply>(reportOf<QT_OverviewPay_Request>(kFirstDay, kLastDay),
                                       "a report for the account after the operator");
}

host::Task playSocial(PackAccount& player, PackClient& packs)
{
    SocialPacks& social = packs.m_Social;
    CCommandSocket& socket = player.getSocket();
    using Token = host::PackAnswer<CmdSocialCreateAccessTokenReply>;
    using Occupied = host::PackAnswer<CmdSocialOccupyAPIReply>;
    using Released = host::PackAnswer<CmdSocialReleaseAPIReply>;

    const CmdSocialCreateAccessTokenRequest create;
    const auto early =
        co_await askPack<CmdSocialCreateAccessTokenReply>(social, socket, packs.sent(player, create), kPatience);
    if (packs.received(player, early))
    {
        expect(player, std::get<Token>(early).m_Error == kSocialErrorNoToken, "no token without an API");
        expectRefused(player, std::get<Token>(early).m_Msg, "a token without an API");
    }
    // Other players may have the APIs for a while.
    const CmdSocialOccupyAPIRequest occupy;
    bool isOccupied = false;
    for (int i = 0; i < kLooks && !isOccupied; ++i)
    {
        const auto reply =
            co_await askPack<CmdSocialOccupyAPIReply>(social, socket, packs.sent(player, occupy), kPatience);
        if (!packs.received(player, reply))
            co_return;
        isOccupied = std::get<Occupied>(reply).m_Error == kSocialErrorNone;
        if (!isOccupied)
            co_await host::sleep(50ms);
    }
    expect(player, isOccupied, "an API becomes free");
    const auto second =
        co_await askPack<CmdSocialOccupyAPIReply>(social, socket, packs.sent(player, occupy), kPatience);
    if (packs.received(player, second))
    {
        expect(player, std::get<Occupied>(second).m_Error == kSocialErrorNoFreeApi, "one API for each player");
        expectRefused(player, std::get<Occupied>(second).m_Msg, "a second API");
    }
    const auto creating =
        co_await askPack<CmdSocialCreateAccessTokenReply>(social, socket, packs.sent(player, create), kPatience);
    const auto* const token = packs.received(player, creating);
    if (!token)
        co_return;
    expect(player, std::get<Token>(creating).m_Error == kSocialErrorNone && !token->m_Text2.isEmpty(), "a token");
    CmdSocialReleaseAPIRequest release;
    release.m_Text1 = token->m_Text1;
    release.m_Text2 = L"another token";
    for (const SocialError error : {kSocialErrorInvalidToken, kSocialErrorNone, kSocialErrorInvalidToken})
    {
        const auto reply =
            co_await askPack<CmdSocialReleaseAPIReply>(social, socket, packs.sent(player, release), kPatience);
        if (packs.received(player, reply))
        {
            expect(player, std::get<Released>(reply).m_Error == error, "an API is released once, with its token");
            if (error != kSocialErrorNone)
                expectRefused(player, std::get<Released>(reply).m_Msg, "a release without the token");
        }
        release.m_Text2 = token->m_Text2;
    }
}

} // namespace arena::player
