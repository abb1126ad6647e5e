// The changing room and the avatar: what a player owns is in the bag of the account, one item per piece; the looks are
// kept in memory by name of the account, and end with the process. Only what is owned can be worn.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>
#include <random>
#include <set>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kNoSuchPiece[] = L"no such piece";
constexpr wchar_t kNoSuchCharacter[] = L"no such character";
constexpr wchar_t kNotOwned[] = L"not owned";
constexpr wchar_t kOwnedBefore[] = L"owned before";

constexpr int kCharacters = ChangingRoomPack_LoadUserDataReply::kLooks;
constexpr int kColumns = ChangingRoomPack_LoadUserDataReply::kColumns;
// Equipment has the numbers 1 to kEquips, a row of the table for each kind.
constexpr int kEquips = ChangingRoomPack_LoadUserDataReply::kRows * kColumns;
constexpr int kEquipPrice = 20;
constexpr int kDrawPrice = 5;
// Wearables of the avatar, which has slots for them.
constexpr int kWearables = 10;
constexpr int kWearablePrice = 15;
constexpr int kSlots = 6;

Text nameOf(const wchar_t* kind, int number)
{
    Text name;
    name.format(L"%s-%d", kind, number);
    return name;
}
constexpr wchar_t kEquip[] = L"equip";
constexpr wchar_t kWearable[] = L"wearable";

bool owns(Session& session, const wchar_t* kind, int number)
{
    return session.getAccount().m_Account.GetItemNum(nameOf(kind, number)) > 0;
}
void give(Session& session, const wchar_t* kind, int number)
{
    FGameItem item;
    item.m_Name = nameOf(kind, number);
    item.m_Num = 1;
    session.getAccount().m_Account.AddItem(item);
}
std::vector<int> listOwned(Session& session, const wchar_t* kind, int count)
{
    std::vector<int> owned;
    for (int number = 1; number <= count; ++number)
        if (owns(session, kind, number))
            owned.push_back(number);
    return owned;
}

class ChangingRoom
{
public:
    bool install(host::Handlers& handlers)
    {
        numberChangingRoom(m_Packs);
        serve<ChangingRoomPack_LoadUserDataRequest, ChangingRoomPack_LoadUserDataReply>(
            m_Packs, [this](Session& session, const ChangingRoomPack_LoadUserDataRequest&,
                            ChangingRoomPack_LoadUserDataReply& reply) { load(session, reply); });
        serve<ChangingRoomPack_UpdateEquipRequest, ChangingRoomPack_UpdateEquipReply>(
            m_Packs, [this](Session& session, const ChangingRoomPack_UpdateEquipRequest& request,
                            ChangingRoomPack_UpdateEquipReply& reply) { update(session, request, reply); });
        serve<ChangingRoomPack_BuyEquipRequest, ChangingRoomPack_BuyEquipReply>(m_Packs, buy);
        serve<ChangingRoomPack_LuckDrawEquipRequest, ChangingRoomPack_LuckDrawEquipReply>(
            m_Packs, [this](Session& session, const ChangingRoomPack_LuckDrawEquipRequest& request,
                            ChangingRoomPack_LuckDrawEquipReply& reply) { draw(session, request, reply); });
        return m_Packs.install(handlers);
    }

private:
    struct Looks
    {
        ChangingRoomEquip m_Looks[kCharacters];
    };

    // The table has the prices.
    void load(Session& session, ChangingRoomPack_LoadUserDataReply& reply)
    {
        const Looks& looks = m_Looks[session.getAccount().m_Account.m_AccountName];
        std::copy(std::begin(looks.m_Looks), std::end(looks.m_Looks), std::begin(reply.m_ChangingRoomEquips));
        reply.m_Owned = listOwned(session, kEquip, kEquips);
        for (auto& row : reply.m_Values)
            std::fill(std::begin(row), std::end(row), kEquipPrice);
    }
    // m_Value1: the character; m_Equip.m_Value1: what it wears, 0 for nothing.
    void update(Session& session, const ChangingRoomPack_UpdateEquipRequest& request,
                ChangingRoomPack_UpdateEquipReply& reply)
    {
        if (request.m_Value1 < 0 || request.m_Value1 >= kCharacters)
            return refuse(reply, kNoSuchCharacter);
        if (request.m_Equip.m_Value1 != 0 && !owns(session, kEquip, request.m_Equip.m_Value1))
            return refuse(reply, kNotOwned);
        m_Looks[session.getAccount().m_Account.m_AccountName].m_Looks[request.m_Value1] = request.m_Equip;
        reply.m_Flag1 = true;
    }
    // m_Value1: the piece. In the reply, the piece, its price and the diamonds left.
    static void buy(Session& session, const ChangingRoomPack_BuyEquipRequest& request,
                    ChangingRoomPack_BuyEquipReply& reply)
    {
        if (request.m_Value1 <= 0 || request.m_Value1 > kEquips)
            refuse(reply, kNoSuchPiece);
        else if (owns(session, kEquip, request.m_Value1))
            refuse(reply, kOwnedBefore);
        else if (pay(session, kEquipPrice, reply))
        {
            give(session, kEquip, request.m_Value1);
            reply.m_Flag1 = save(session, reply);
        }
        reply.m_Value1 = request.m_Value1;
        reply.m_Value2 = kEquipPrice;
        reply.m_Value3 = diamondsOf(session.getAccount());
    }
    // m_Value1: the row of the table from which a piece is drawn. Every piece of it is as likely, owned or not.
    void draw(Session& session, const ChangingRoomPack_LuckDrawEquipRequest& request,
              ChangingRoomPack_LuckDrawEquipReply& reply)
    {
        if (request.m_Value1 < 0 || request.m_Value1 >= kEquips / kColumns)
            return refuse(reply, kNoSuchPiece);
        if (!pay(session, kDrawPrice, reply))
            return;
        const int column = std::uniform_int_distribution<int>(1, kColumns)(m_Random);
        const int piece = request.m_Value1 * kColumns + column;
        give(session, kEquip, piece);
        if (save(session, reply))
        {
            reply.m_Flag1 = true;
            reply.m_Value1 = piece;
        }
    }

    ChangingRoomPacks m_Packs;
    std::map<Text, Looks> m_Looks;
    std::mt19937 m_Random{std::random_device()()};
};

// The worn wearables by slot, for each account.
using Worn = std::map<Text, std::map<int, int>>;

void loadAvatar(Worn& worn, Session& session, CmdAvatarLoadDataReply& reply)
{
    reply.m_Value1 = 1;
    for (int number = 1; number <= kWearables; ++number)
    {
        CmdAvatarItem item;
        item.m_ItemId = number;
        item.m_Text1 = nameOf(kWearable, number);
        item.m_Value1 = kWearablePrice;
        reply.m_CmdAvatarItems1.push_back(item);
    }
    reply.m_Map1 = worn[session.getAccount().m_Account.m_AccountName];
    reply.m_Owned = listOwned(session, kWearable, kWearables);
}

// m_Map1: the wearable of each slot. All or nothing is put on.
void saveAvatar(Worn& worn, Session& session, const CmdAvatarSaveDataRequest& request, CmdAvatarSaveDataReply& reply)
{
    for (const auto& [slot, wearable] : request.m_Map1)
    {
        if (slot < 0 || slot >= kSlots)
            return refuse(reply, kNoSuchPiece);
        if (!owns(session, kWearable, wearable))
            return refuse(reply, kNotOwned);
    }
    worn[session.getAccount().m_Account.m_AccountName] = request.m_Map1;
    reply.m_Value1 = 1;
}

// m_Items: the wearables, bought together or not at all. In the reply, the price and all that is owned.
void buyAvatar(Session& session, const CmdAvatarBuyDataRequest& request, CmdAvatarBuyDataReply& reply)
{
    const std::set<int> wanted(request.m_Items.begin(), request.m_Items.end());
    for (const int wearable : wanted)
    {
        if (wearable <= 0 || wearable > kWearables)
            return refuse(reply, kNoSuchPiece);
        if (owns(session, kWearable, wearable))
            return refuse(reply, kOwnedBefore);
    }
    const int price = kWearablePrice * static_cast<int>(wanted.size());
    if (!pay(session, price, reply))
        return;
    for (const int wearable : wanted)
        give(session, kWearable, wearable);
    if (!save(session, reply))
        return;
    reply.m_Value1 = 1;
    reply.m_Value2 = price;
    reply.m_Items = listOwned(session, kWearable, kWearables);
}

} // namespace

Feature serveChangingRoom(Platform& platform)
{
    auto room = std::make_shared<ChangingRoom>();
    return room->install(platform.getHandlers()) ? room : nullptr;
}

Feature serveAvatar(Platform& platform)
{
    auto worn = std::make_shared<Worn>();
    VoidData& packs = platform.getVoidData();
    numberVoidData(packs);
    serve<CmdAvatarLoadDataRequest, CmdAvatarLoadDataReply>(
        packs, [worn](Session& session, const CmdAvatarLoadDataRequest&, CmdAvatarLoadDataReply& reply)
        { loadAvatar(*worn, session, reply); });
    serve<CmdAvatarSaveDataRequest, CmdAvatarSaveDataReply>(
        packs, [worn](Session& session, const CmdAvatarSaveDataRequest& request, CmdAvatarSaveDataReply& reply)
        { saveAvatar(*worn, session, request, reply); });
    serve<CmdAvatarBuyDataRequest, CmdAvatarBuyDataReply>(packs, buyAvatar);
    return worn;
}

} // namespace arena::platform
