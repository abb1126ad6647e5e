#include "playerdata/account_core.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace
{

// A sum of pieces, saturated at the range of int.
int addPieces(int64_t a, int64_t b)
{
    return static_cast<int>(
        std::clamp<int64_t>(a + b, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// The rules of the bag and of the gift box, which are two lists of the same kind.

void eraseStack(std::vector<FGameItem>& list, int index)
{
    if (index >= 0 && static_cast<size_t>(index) < list.size())
        list.erase(list.begin() + index);
}

FGameItem* findStack(std::vector<FGameItem>& list, int index)
{
    if (index < 0 || static_cast<size_t>(index) >= list.size())
        return nullptr;
    FGameItem& item = list[static_cast<size_t>(index)];
    if (item.m_Num >= 1)
        return &item;
    eraseStack(list, index);
    return nullptr;
}

bool usePieces(std::vector<FGameItem>& list, int index, int num)
{
    FGameItem* item = findStack(list, index);
    if (!item)
        return false;
    // Both are at least 1, so the difference is an int.
    item->m_Num -= num;
    if (item->m_Num < 1)
        eraseStack(list, index);
    return true;
}

} // namespace

FGameItem* AccountData::GetItem(int index)
{
    return findStack(m_ItemList, index);
}

int AccountData::GetItemNum(const zet::String_T<wchar_t>& name) const
{
    int pieces = 0;
    for (const FGameItem& item : m_ItemList)
        if (item.m_Name == name)
            pieces = addPieces(pieces, item.m_Num);
    return pieces;
}

void AccountData::DelItem(int index)
{
    eraseStack(m_ItemList, index);
}

bool AccountData::AddItem(FGameItem item)
{
    if (!item.IsValid())
        return false;
    for (FGameItem& stack : m_ItemList)
    {
        if (stack.m_Name == item.m_Name)
        {
            stack.m_Num = addPieces(stack.m_Num, item.m_Num);
            return true;
        }
    }
    m_ItemList.push_back(std::move(item));
    return true;
}

bool AccountData::UseItem(int index, int num)
{
    return num >= 1 && usePieces(m_ItemList, index, num);
}

FGameItem* AccountData::GetGiftBox(int index)
{
    return findStack(m_GiftBox, index);
}

void AccountData::DelGiftBox(int index)
{
    eraseStack(m_GiftBox, index);
}

bool AccountData::UseGiftBox(int index)
{
    return usePieces(m_GiftBox, index, 1);
}

void AccountData::AddNewbieFlag(int flag)
{
    m_NewbieFlag |= flag;
}

bool AccountData::HasNewbieFlag(int flag) const
{
    return (m_NewbieFlag & flag) != 0;
}

void AccountData::OnGetVIP(int clear)
{
    if (clear == 0)
        return;
    for (auto& [id, game] : m_TrainingMap)
    {
        game.m_CDDuration = 0;
        game.m_PlayTimes = 0;
        game.m_Locked = false;
    }
}

void AccountData::DropVisitorScore()
{
    for (auto& [id, game] : m_TrainingMap)
        game.m_BestScore = FGameObject::kNotPlayed;
}

void AccountData::OnLostVIP() {}
void AccountData::RecountEnergyTime() {}
void AccountData::ClearNewFlag() {}
void AccountData::UnLock(int, int, int) {}
void AccountData::ResetMissionMap() {}
void AccountData::ResetTrainingMap() {}
void AccountData::ResetRushMap() {}
void AccountData::ResetMusicMap() {}
void AccountData::ResetBrainMap() {}
void AccountData::ResetCalorie() {}
void AccountData::CheckGiftOutOfDate() {}
void AccountData::LoadMissionFromString(const zet::String_T<wchar_t>&) {}
void AccountData::LoadGiftFromString(const zet::String_T<wchar_t>&) {}
void AccountData::AddGiftBox(const FGameItem&) {}

int AccountData::GetGiftBoxLeftDay(int) const
{
    return 0;
}

FGameMission* AccountData::GetMission(int)
{
    return nullptr;
}

zet::String_T<wchar_t> AccountData::SaveStringFromMission() const
{
    return {};
}

zet::String_T<wchar_t> AccountData::SaveStringFromGift() const
{
    return {};
}
