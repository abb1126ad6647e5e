#include "examples/arena/player/void_data_script.h"
#include "commands/account_payloads.h"
#include "commands/game_payloads.h"
#include "commands/login.h"
#include "commands/shop_payloads.h"
#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "examples/arena/protocol/platform_codes.h"

#include <any>
#include <functional>
#include <typeindex>
#include <unordered_map>

using namespace std::chrono_literals;

namespace arena::player
{

namespace
{

using VoidData = host::PackRouter<CCmdVoidDataRequest, CCmdVoidDataReply>;

// A connection that keeps the last reply of each class until it is taken.
class PayloadLine
{
public:
    explicit PayloadLine(Player& player) : m_Handlers(*m_Analyser), m_Line(player, *m_Analyser) {}

    // At first, for each class of requests and replies.
    template <class Request>
    void number(int number)
    {
        m_IsSound = m_Router.number<Request>(number) && m_IsSound;
    }
    template <class Reply>
    void expect(int number)
    {
        m_IsSound = m_Router.on<Reply>(number, [this](CCommandSocket&, const Reply& reply)
                                       { m_Replies.insert_or_assign(typeid(Reply), reply); }) &&
                    m_IsSound;
    }
    // Then logs in with a new account.
    bool enter()
    {
        m_IsSound = m_IsSound && m_Router.install(m_Handlers) &&
                    m_Handlers.on<CCmdLoginSuccess>([this](CCommandSocket&, const CCmdLoginSuccess& success)
                                                    { m_IsIn = success.m_Account.m_AccountId > 0; }) &&
                    m_Handlers.on<CCmdLoginFail>([this](CCommandSocket&, const CCmdLoginFail&) { m_IsRefused = true; });
        zet::Uuid id;
        zet::uuid_create(id);
        CCmdBaseLogin login;
        login.m_Texts[protocol::kLoginName] = idText(id);
        login.m_Texts[protocol::kLoginPassword] = L"a password";
        return m_IsSound && m_Line->send(login);
    }
    bool isIn() const { return m_IsIn; }
    bool isRefused() const { return m_IsRefused; }
    bool isLost() const { return m_Line.isLost(); }

    template <class Request>
    void send(const Request& request)
    {
        m_Router.send(*m_Line, request);
    }
    bool has(std::type_index reply) const { return m_Replies.count(reply) != 0; }
    // The reply of a class, which is there.
    template <class Reply>
    Reply take()
    {
        Reply reply = std::any_cast<Reply>(m_Replies.at(typeid(Reply)));
        m_Replies.erase(typeid(Reply));
        return reply;
    }

private:
    const std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers;
    VoidData m_Router;
    std::unordered_map<std::type_index, std::any> m_Replies;
    bool m_IsSound = true;
    bool m_IsIn = false;
    bool m_IsRefused = false;
    Line m_Line;
};

// A request, the class of its reply, and what must be true of the reply.
struct Step
{
    const char* m_Words;
    std::function<void(PayloadLine& line)> m_Send;
    std::type_index m_Reply;
    std::function<bool(PayloadLine& line)> m_IsRight;
};

template <class Reply, class Request, class Test>
Step makeStep(const char* words, const Request& request, Test test)
{
    return {words, [request](PayloadLine& line) { line.send(request); }, typeid(Reply),
            [test](PayloadLine& line) { return test(line.take<Reply>()); }};
}

// Whether a request was carried out: its reply has no reason.
constexpr auto isDone = [](const auto& reply) { return reply.m_Text1.isEmpty(); };
constexpr auto isRefused = [](const auto& reply) { return !reply.m_Text1.isEmpty(); };
constexpr auto isThere = [](const auto&) { return true; };

template <class Request>
Request make(int value1, int value2 = 0)
{
    Request request;
    request.m_Value1 = value1;
    if constexpr (requires { request.m_Value2; })
        request.m_Value2 = value2;
    return request;
}

// The shop's first offer is one of apples for 20 of the 100 gold of a beginner.
void addShopSteps(std::vector<Step>& steps)
{
    steps.push_back(makeStep<CmdShopListReply>("CmdShopListRequest", CmdShopListRequest(),
                                               [](const auto& reply)
                                               { return !reply.m_GameShop.m_ShopTrades.empty(); }));
    steps.push_back(makeStep<CmdBuyItemReply>("CmdBuyItemRequest", make<CmdBuyItemRequest>(0, 1),
                                              [](const auto& reply)
                                              { return reply.m_Account.GetItemNum(L"apple") == 5; }));
    steps.push_back(
        makeStep<CmdBuyItemReply>("CmdBuyItemRequest, too many", make<CmdBuyItemRequest>(0, 99), isRefused));
    steps.push_back(makeStep<CmdUseItemReply>("CmdUseItemRequest", make<CmdUseItemRequest>(0, 1),
                                              [](const auto& reply)
                                              { return reply.m_Account.GetItemNum(L"apple") == 4; }));
    steps.push_back(makeStep<CmdUseItemReply>("CmdUseItemRequest, none", make<CmdUseItemRequest>(9, 1), isRefused));
    steps.push_back(makeStep<CmdUseGiftReply>("CmdUseGiftRequest", make<CmdUseGiftRequest>(0), isDone));
    steps.push_back(makeStep<CmdUseGiftReply>("CmdUseGiftRequest, none", make<CmdUseGiftRequest>(0), isRefused));
    steps.push_back(
        makeStep<CmdExchangeGoldReply>("CmdExchangeGoldRequest, too poor", make<CmdExchangeGoldRequest>(1), isRefused));
    steps.push_back(
        makeStep<CmdTurnTableRewardReply>("CmdTurnTableRewardRequest", CmdTurnTableRewardRequest(), isDone));
    steps.push_back(makeStep<CmdBigTableReply>("CmdBigTableRequest, too poor", CmdBigTableRequest(), isRefused));
    steps.push_back(makeStep<CmdUpdateGoldReply>("CmdUpdateGoldRequest", CmdUpdateGoldRequest(),
                                                 [](const auto& reply) { return reply.m_Value1 == 70; }));
    steps.push_back(makeStep<CmdUpdateDiamondReply>("CmdUpdateDiamondRequest", CmdUpdateDiamondRequest(),
                                                    [](const auto& reply) { return reply.m_Value1 == 0; }));
    steps.push_back(
        makeStep<CmdLingyuangouBuyListReply>("CmdLingyuangouBuyListRequest", CmdLingyuangouBuyListRequest(), isDone));
}

void addGameSteps(std::vector<Step>& steps)
{
    steps.push_back(makeStep<CmdUnlockGameReply>("CmdUnlockGameRequest", make<CmdUnlockGameRequest>(12),
                                                 [](const auto& reply)
                                                 { return !reply.m_Account.m_TrainingMap.at(12).m_Locked; }));
    steps.push_back(
        makeStep<CmdUnlockGameReply>("CmdUnlockGameRequest, open", make<CmdUnlockGameRequest>(12), isRefused));
    steps.push_back(makeStep<CmdCancelCDReply>("CmdCancelCDRequest, none", make<CmdCancelCDRequest>(1), isRefused));
    steps.push_back(makeStep<CmdDropScoreNotVIPReply>("CmdDropScoreNotVIPRequest", CmdDropScoreNotVIPRequest(),
                                                      [](const auto& reply)
                                                      { return reply.m_Flag1 && !reply.m_TrainingMap.empty(); }));
    steps.push_back(makeStep<CmdUpdateTrainGameMapReply>(
        "the training games", RequestFor<CmdUpdateTrainGameMapReply>(),
        [](const auto& reply) { return reply.m_TrainingMap.count(12) == 1 && !reply.m_TrainingMap.at(12).m_Locked; }));
    steps.push_back(
        makeStep<CmdUpdateKinectGameReply>("the camera game", RequestFor<CmdUpdateKinectGameReply>(), isThere));
    steps.push_back(makeStep<CmdTrainGameScoreRankReply>("the place by training scores",
                                                         RequestFor<CmdTrainGameScoreRankReply>(),
                                                         [](const auto& reply) { return reply.m_Float1 >= 1; }));
    steps.push_back(makeStep<CmdMatchPlayerReply>("CmdMatchPlayerRequest", CmdMatchPlayerRequest(), isThere));
}

void addPersonSteps(std::vector<Step>& steps)
{
    steps.push_back(makeStep<CmdServerDateReply>("CmdServerDateRequest", CmdServerDateRequest(),
                                                 [](const auto& reply) { return !reply.m_Text1.isEmpty(); }));
    steps.push_back(makeStep<CmdRandomNickReply>("CmdRandomNickRequest", CmdRandomNickRequest(),
                                                 [](const auto& reply) { return reply.m_Text1 != reply.m_Text2; }));
    CmdCreateCharactorRequest create;
    create.m_Text1 = L"Swift";
    steps.push_back(makeStep<CmdCreateCharactorReply>("CmdCreateCharactorRequest", create, isDone));
    steps.push_back(makeStep<CmdCreateCharactorReply>("CmdCreateCharactorRequest, again", create, isRefused));
    steps.push_back(makeStep<CmdGetV5UserDataReply>("CmdGetV5UserDataRequest", CmdGetV5UserDataRequest(),
                                                    [](const auto& reply) { return reply.m_Account.m_AccountId > 0; }));
    steps.push_back(makeStep<CmdCommitQuestionnaireReply>("CmdCommitQuestionnaireRequest",
                                                          CmdCommitQuestionnaireRequest(), isDone));
    steps.push_back(makeStep<CmdCommitQuestionnaireReply>("CmdCommitQuestionnaireRequest, again",
                                                          CmdCommitQuestionnaireRequest(), isRefused));
    steps.push_back(makeStep<CmdActivityReply>("CmdActivityRequest", CmdActivityRequest(), isDone));
    steps.push_back(makeStep<CmdActivityReply>("CmdActivityRequest, again", CmdActivityRequest(), isRefused));
    steps.push_back(makeStep<CmdUserAddressReply>("CmdUserAddressRequest", CmdUserAddressRequest(), isThere));
    CmdCommitPhoneRequest phone;
    steps.push_back(makeStep<CmdGetUserDataReply>("CmdCommitPhoneRequest, empty", phone, isRefused));
    phone.m_Text1 = L"0815";
    steps.push_back(makeStep<CmdGetUserDataReply>(
        "CmdCommitPhoneRequest", phone, [](const auto& reply) { return reply.m_GlobalData.m_GlobalText5 == L"0815"; }));
}

void setNumbers(PayloadLine& line)
{
    line.number<CmdShopListRequest>(kVoidDataShopListRequest);
    line.expect<CmdShopListReply>(kVoidDataShopListReply);
    line.number<CmdBuyItemRequest>(kVoidDataBuyItemRequest);
    line.expect<CmdBuyItemReply>(kVoidDataBuyItemReply);
    line.number<CmdUseItemRequest>(kVoidDataUseItemRequest);
    line.expect<CmdUseItemReply>(kVoidDataUseItemReply);
    line.number<CmdUseGiftRequest>(kVoidDataUseGiftRequest);
    line.expect<CmdUseGiftReply>(kVoidDataUseGiftReply);
    line.number<CmdExchangeGoldRequest>(kVoidDataExchangeGoldRequest);
    line.expect<CmdExchangeGoldReply>(kVoidDataExchangeGoldReply);
    line.number<CmdTurnTableRewardRequest>(kVoidDataTurnTableRewardRequest);
    line.expect<CmdTurnTableRewardReply>(kVoidDataTurnTableRewardReply);
    line.number<CmdBigTableRequest>(kVoidDataBigTableRequest);
    line.expect<CmdBigTableReply>(kVoidDataBigTableReply);
    line.number<CmdUpdateGoldRequest>(kVoidDataUpdateGoldRequest);
    line.expect<CmdUpdateGoldReply>(kVoidDataUpdateGoldReply);
    line.number<CmdUpdateDiamondRequest>(kVoidDataUpdateDiamondRequest);
    line.expect<CmdUpdateDiamondReply>(kVoidDataUpdateDiamondReply);
    line.number<CmdLingyuangouBuyListRequest>(kVoidDataLingyuangouBuyListRequest);
    line.expect<CmdLingyuangouBuyListReply>(kVoidDataLingyuangouBuyListReply);
    line.number<CmdUnlockGameRequest>(kVoidDataUnlockGameRequest);
    line.expect<CmdUnlockGameReply>(kVoidDataUnlockGameReply);
    line.number<CmdCancelCDRequest>(kVoidDataCancelCDRequest);
    line.expect<CmdCancelCDReply>(kVoidDataCancelCDReply);
    line.number<CmdDropScoreNotVIPRequest>(kVoidDataDropScoreNotVIPRequest);
    line.expect<CmdDropScoreNotVIPReply>(kVoidDataDropScoreNotVIPReply);
    line.number<RequestFor<CmdUpdateTrainGameMapReply>>(kVoidDataUpdateTrainGameMapRequest);
    line.expect<CmdUpdateTrainGameMapReply>(kVoidDataUpdateTrainGameMapReply);
    line.number<RequestFor<CmdUpdateKinectGameReply>>(kVoidDataUpdateKinectGameRequest);
    line.expect<CmdUpdateKinectGameReply>(kVoidDataUpdateKinectGameReply);
    line.number<RequestFor<CmdTrainGameScoreRankReply>>(kVoidDataTrainGameScoreRankRequest);
    line.expect<CmdTrainGameScoreRankReply>(kVoidDataTrainGameScoreRankReply);
    line.number<CmdMatchPlayerRequest>(kVoidDataMatchPlayerRequest);
    line.expect<CmdMatchPlayerReply>(kVoidDataMatchPlayerReply);
    line.number<CmdServerDateRequest>(kVoidDataServerDateRequest);
    line.expect<CmdServerDateReply>(kVoidDataServerDateReply);
    line.number<CmdRandomNickRequest>(kVoidDataRandomNickRequest);
    line.expect<CmdRandomNickReply>(kVoidDataRandomNickReply);
    line.number<CmdCreateCharactorRequest>(kVoidDataCreateCharactorRequest);
    line.expect<CmdCreateCharactorReply>(kVoidDataCreateCharactorReply);
    line.number<CmdGetV5UserDataRequest>(kVoidDataGetV5UserDataRequest);
    line.expect<CmdGetV5UserDataReply>(kVoidDataGetV5UserDataReply);
    line.number<CmdCommitQuestionnaireRequest>(kVoidDataCommitQuestionnaireRequest);
    line.expect<CmdCommitQuestionnaireReply>(kVoidDataCommitQuestionnaireReply);
    line.number<CmdActivityRequest>(kVoidDataActivityRequest);
    line.expect<CmdActivityReply>(kVoidDataActivityReply);
    line.number<CmdUserAddressRequest>(kVoidDataUserAddressRequest);
    line.expect<CmdUserAddressReply>(kVoidDataUserAddressReply);
    line.number<CmdCommitPhoneRequest>(kVoidDataCommitPhoneRequest);
    line.expect<CmdGetUserDataReply>(kVoidDataGetUserDataReply);
}

} // namespace

bool installVoidData(Players&)
{
    return true;
}

host::Task playVoidData(Player& player)
{
    constexpr auto kPause = 5ms;
    const int patience = static_cast<int>(Player::kPatience / kPause);
    PayloadLine line(player);
    setNumbers(line);
    if (!line.enter())
    {
        player.fail("void data: no connection");
        co_return;
    }
    for (int i = 0; i < patience && !line.isIn() && !line.isRefused() && !line.isLost(); ++i)
        co_await host::sleep(kPause);
    if (!line.isIn())
    {
        if (line.isLost())
            player.interrupt();
        player.fail("void data: no login");
        co_return;
    }
    std::vector<Step> steps;
    addShopSteps(steps);
    addGameSteps(steps);
    addPersonSteps(steps);
    for (const Step& step : steps)
    {
        step.m_Send(line);
        for (int i = 0; i < patience && !line.has(step.m_Reply) && !line.isLost(); ++i)
            co_await host::sleep(kPause);
        if (!line.has(step.m_Reply))
        {
            if (line.isLost())
                player.interrupt();
            player.fail("%s: no reply", step.m_Words);
            co_return;
        }
        if (step.m_IsRight(line))
            player.note("%s", step.m_Words);
        else
            player.fail("%s: a reply that was not expected", step.m_Words);
    }
    player.note("void data done");
}

} // namespace arena::player
