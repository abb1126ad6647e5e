// What serves programs rather than players: the profiling, the query tool of the operator, and the pool of social APIs.
// All of it is kept in memory and ends with the process.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <algorithm>
#include <random>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kNotTheOperator[] = L"not the operator";
constexpr wchar_t kNoToolLogin[] = L"the tool is not logged in";
constexpr wchar_t kOldVersion[] = L"another version is wanted";
constexpr wchar_t kNoDates[] = L"two dates are wanted, the earlier one first";

constexpr wchar_t kToolVersion[] = L"1.0";
constexpr size_t kMostQuantities = 100;
constexpr size_t kMostMacs = 1000;
// The length of an address in UTF-16 units.
constexpr int kMostMac = 20;
constexpr int kApis = 2;

// The maxima of quantities that clients measure. A submitted value that is not valid comes back.
class Profiling
{
public:
    bool install(host::Handlers& handlers)
    {
        numberProfiling(m_Packs);
        m_Packs.on<CmdProfilingPack_GetMaxValues>(
            [this](CCommandSocket& socket, const CmdProfilingPack_GetMaxValues&, const auto& envelope)
            {
                CmdProfilingPack_GetMaxValues reply;
                if (static_cast<Session&>(socket).isLoggedIn())
                    reply.m_ProfilingMaxValues = m_Maxima;
                m_Packs.template reply<CCmdProfilingPackReply>(socket, envelope, reply);
            });
        m_Packs.on<CmdProfilingPack_SubmitMaxValues>(
            [this](CCommandSocket& socket, const CmdProfilingPack_SubmitMaxValues& request, const auto& envelope)
            {
                CmdProfilingPack_SubmitMaxValues refused;
                for (const auto& [name, value] : request.m_ProfilingMaxValues)
                    if (!static_cast<Session&>(socket).isLoggedIn() || !add(value))
                        refused.m_ProfilingMaxValues[name] = value;
                m_Packs.template reply<CCmdProfilingPackReply>(socket, envelope, refused);
            });
        return m_Packs.install(handlers);
    }

private:
    bool add(const cProfilingMaxValue& value)
    {
        if (!value.IsValid() || (m_Maxima.size() >= kMostQuantities && m_Maxima.count(value.m_Name) == 0))
            return false;
        cProfilingMaxValue& maximum = m_Maxima[value.m_Name];
        maximum.m_Name = value.m_Name;
        maximum.m_Value1 = std::max(maximum.m_Value1, value.m_Value1);
        maximum.m_Value2 = std::max(maximum.m_Value2, value.m_Value2);
        maximum.m_Value3 = std::max(maximum.m_Value3, value.m_Value3);
        return true;
    }

    ProfilingPacks m_Packs;
    std::map<Text, cProfilingMaxValue> m_Maxima;
};

// The reports have a row for the day; what a host counts goes into their columns.
class QueryTool
{
public:
    explicit QueryTool(Platform& platform) : m_Platform(platform) {}

    bool install(host::Handlers& handlers)
    {
        numberQueryTool(m_Packs);
        // m_Text1: the account of the operator, which has logged in as a player.
        serve<QT_Login_Request, QT_Login_Reply>(
            m_Packs,
            [this](Session& session, const QT_Login_Request& request, QT_Login_Reply& reply)
            {
                if (!(request.m_Text1 == session.getAccount().m_Account.m_AccountName) || !isOperator(session))
                    return refuse(reply, kNotTheOperator);
                m_Tools.add(session, true);
                reply.m_Flag1 = true;
            });
        serve<QT_CheckVersion_Request, QT_CheckVersion_Reply>(
            m_Packs,
            [](Session&, const QT_CheckVersion_Request& request, QT_CheckVersion_Reply& reply)
            {
                reply.m_Flag1 = request.m_Version == kToolVersion;
                if (!reply.m_Flag1)
                    refuse(reply, kOldVersion);
            });
        // The product is confirmed.
        m_Packs.on<QT_SendProductType>(
            [this](CCommandSocket& socket, const QT_SendProductType& product, const auto& envelope)
            {
                if (isTool(static_cast<Session&>(socket)))
                    m_Packs.template reply<CCmdQueryToolReply>(socket, envelope, product);
            });
        serveSilently<QT_InsertMac_Request>(m_Packs,
                                            [this](Session& session, const QT_InsertMac_Request& request)
                                            {
                                                for (const Text& mac : request.m_Texts)
                                                    if (isTool(session) && m_Macs.size() < kMostMacs)
                                                        m_Macs.push_back(mac.getSubString(0, kMostMac));
                                            });
        on<RequestFor<QT_TableTimeFrom_Reply>, QT_TableTimeFrom_Reply>(
            [](const auto&, QT_TableTimeFrom_Reply& reply)
            {
                reply.m_Text1 = getToday();
                reply.m_Text2 = getToday();
            });
        on<RequestFor<QT_QueryCondition_Reply>, QT_QueryCondition_Reply>(
            [this](const auto&, QT_QueryCondition_Reply& reply)
            {
                reply.m_List1 = {g_DeviceType_TV, g_DeviceType_Mobile, g_DeviceType_QRCode};
                reply.m_List2 = m_Macs;
            });
        report<QT_OverviewPay_Request, QT_OverviewPay_Reply>();
        report<QT_Payment_Pay_Request, QT_Payment_Pay_Reply>();
        report<QT_Payment_Consumption_Request, QT_Payment_Consumption_Reply>();
        report<QT_Nib2Nib3_Pay_Request, QT_Nib2Nib3_Pay_Reply>();
        report<QT_OnlineQuery_Hours24Online_Request, QT_OnlineQuery_Hours24Online_Reply>();
        report<QT_OnlineQuery_DaysOnline_Request, QT_OnlineQuery_DaysOnline_Reply>();
        report<QT_BstFmy3_DailyStats_Request, QT_BstFmy3_DailyStats_Reply>();
        report<QT_BstFmy3_EventTrigger_Request, QT_BstFmy3_EventTrigger_Reply>();
        report<QT_BstFmy3_PropsOutput_Request, QT_BstFmy3_PropsOutput_Reply>();
        report<QT_BstFmy3_WeekMatchStats_Request, QT_BstFmy3_WeekMatchStats_Reply>();
        report<QT_BstFmy3_ZillionaireProps_Request, QT_BstFmy3_ZillionaireProps_Reply>();
        report<QT_BstFmy3_ZillionaireStats_Request, QT_BstFmy3_ZillionaireStats_Reply>();
        return m_Packs.install(handlers);
    }

private:
    bool isOperator(Session& session) const
    {
        return session.isLoggedIn() &&
               session.getAccount().m_Account.m_AccountName == m_Platform.getOptions().m_Operator;
    }
    // Whether the tool has logged in. Another account may have logged in on its connection since.
    bool isTool(Session& session) { return m_Tools.find(session) && isOperator(session); }
    // Only for a tool that has logged in.
    template <class Request, class Reply, class Work>
    void on(Work work)
    {
        serve<Request, Reply>(m_Packs,
                              [this, work](Session& session, const Request& request, Reply& reply)
                              {
                                  if (isTool(session))
                                      work(request, reply);
                                  else
                                      refuse(reply, kNoToolLogin);
                              });
    }
    // m_Text1 and m_Text2: the first day and the last one.
    template <class Request, class Reply>
    void report()
    {
        on<Request, Reply>(
            [](const Request& request, Reply& reply)
            {
                zet::Time first;
                zet::Time last;
                if (!first.convertFromString(request.m_Text1) || !last.convertFromString(request.m_Text2) ||
                    last < first)
                    return refuse(reply, kNoDates);
                if constexpr (requires { reply.m_Column1; })
                    addRow(reply);
            });
    }
    // A column of texts has the day, one of numbers 0.
    template <class Column>
    static void addTo(Column& column)
    {
        if constexpr (std::is_same_v<typename Column::value_type, Text>)
            column.push_back(getToday());
        else
            column.push_back(0);
    }
    template <class Reply>
    static void addRow(Reply& reply)
    {
        addTo(reply.m_Column1);
        addTo(reply.m_Column2);
        if constexpr (requires { reply.m_Column3; })
            addTo(reply.m_Column3);
        if constexpr (requires { reply.m_Column4; })
            addTo(reply.m_Column4);
        if constexpr (requires { reply.m_Column5; })
            addTo(reply.m_Column5);
        if constexpr (requires { reply.m_Column6; })
            addTo(reply.m_Column6);
    }

    Platform& m_Platform;
    QueryToolPacks m_Packs;
    Members<bool> m_Tools;
    std::vector<Text> m_Macs;
};

// A caller occupies an API, makes a token for it, and releases it with the token. One API for each caller.
class Social
{
public:
    bool install(host::Handlers& handlers)
    {
        numberSocial(m_Packs);
        on<CmdSocialOccupyAPIRequest, CmdSocialOccupyAPIReply>(
            [this](Session& session, const CmdSocialOccupyAPIRequest&, CmdSocialOccupyAPIReply& reply)
            {
                if (!m_Slots.add(session, {}))
                    return kSocialErrorNoFreeApi;
                if (m_Slots.getCount() > kApis)
                {
                    m_Slots.remove(session);
                    return kSocialErrorNoFreeApi;
                }
                Slot& slot = *m_Slots.find(session);
                slot.m_Api.format(L"api-%d", ++m_LastApi);
                reply.m_Text1 = slot.m_Api;
                return kSocialErrorNone;
            });
        on<CmdSocialCreateAccessTokenRequest, CmdSocialCreateAccessTokenReply>(
            [this](Session& session, const CmdSocialCreateAccessTokenRequest&, CmdSocialCreateAccessTokenReply& reply)
            {
                Slot* const slot = m_Slots.find(session);
                if (!slot)
                    return kSocialErrorNoToken;
                // A token that cannot be guessed.
                std::random_device random;
                slot->m_Token.format(L"%08x%08x%08x%08x", random(), random(), random(), random());
                reply.m_Text1 = slot->m_Api;
                reply.m_Text2 = slot->m_Token;
                return kSocialErrorNone;
            });
        // m_Text1: the API; m_Text2: the token.
        on<CmdSocialReleaseAPIRequest, CmdSocialReleaseAPIReply>(
            [this](Session& session, const CmdSocialReleaseAPIRequest& request, CmdSocialReleaseAPIReply&)
            {
                const Slot* const slot = m_Slots.find(session);
                if (!slot || slot->m_Token.isEmpty() || !(slot->m_Api == request.m_Text1) ||
                    !(slot->m_Token == request.m_Text2))
                    return kSocialErrorInvalidToken;
                m_Slots.remove(session);
                return kSocialErrorNone;
            });
        return m_Packs.install(handlers);
    }

private:
    struct Slot
    {
        Text m_Api;
        Text m_Token;
    };

    // work returns the error of the reply.
    template <class Request, class Reply, class Work>
    void on(Work work)
    {
        m_Packs.on<Request>(
            [this, work](CCommandSocket& socket, const Request& request, const CCmdSocialRequest& envelope)
            {
                auto& session = static_cast<Session&>(socket);
                Reply reply;
                const SocialError error =
                    session.isLoggedIn() ? work(session, request, reply) : kSocialErrorInvalidToken;
                m_Packs.reply(socket, envelope, reply,
                              [error](CCmdSocialReply& answer)
                              {
                                  answer.m_Error = error;
                                  answer.m_Msg = getSocialErrMsg(error);
                              });
            });
    }

    SocialPacks m_Packs;
    Members<Slot> m_Slots;
    int m_LastApi = 0;
};

template <class Tool, class... Arguments>
Feature serveTool(Platform& platform, Arguments&... arguments)
{
    auto tool = std::make_shared<Tool>(arguments...);
    return tool->install(platform.getHandlers()) ? tool : nullptr;
}

} // namespace

Feature serveProfiling(Platform& platform)
{
    return serveTool<Profiling>(platform);
}

Feature serveQueryTool(Platform& platform)
{
    return serveTool<QueryTool>(platform, platform);
}

Feature serveSocial(Platform& platform)
{
    return serveTool<Social>(platform);
}

} // namespace arena::platform
