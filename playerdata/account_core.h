// The core record of a player in a game zone: identity, counters, bag, gift box, progress in the games.
//
// Most commands with account data contain it whole, and an account database stores it as its serialised bytes or as two
// texts: the training string and the item string, whose grammars are at their operations below. Hosts own and change it
// and serialise access; nothing here is locked. A bad index gives null, false or no effect, never an error.
#pragma once

#include "packaging/wire_interface.h"
#include "playerdata/game_training.h"
#include "playerdata/items.h"

#include <map>
#include <vector>

// Complete in playerdata/game_kinds.h.
class FGameMission;

// The core record of a player in a game zone.
class COMMONGROUND_API AccountData
{
public:
    static constexpr int kAllowances = 7;

    AccountData();
    AccountData(const AccountData& other);
    AccountData(AccountData&& other) noexcept;
    ~AccountData();
    // Copies everything except m_Value3 and m_Allowance, which keep their values. There is no move assignment, so an
    // assignment from a temporary keeps them, too.
    AccountData& operator=(const AccountData& other);

    // Write and Read return false if a field or a count fails, Write also if an element fails. An element that cannot
    // be read is stored as far as it was read, and Read continues. The keys of the maps are not sent: Read uses
    // m_GameId as the key of a game (of two games with one id the later is kept) and the position as the key of a date,
    // so gaps between the slots of dates are lost.
    WIRE_INTERFACE_BOTH

    // Resets everything to its default except the base fields of m_KinectGame, which do not change.
    void Reset();

    // The bag. An index is a position in m_ItemList; later stacks move down when one is deleted.

    // The stack; null if there is none. A stack without pieces is deleted, and null is returned. The pointer is valid
    // until the bag changes.
    FGameItem* GetItem(int index);
    // Pieces of a name in all stacks. Here and in AddItem sums saturate at the range of int.
    int GetItemNum(const zet::String_T<wchar_t>& name) const;
    // Deletes the stack. Does nothing for an index outside the bag.
    void DelItem(int index);
    // Adds the pieces to the first stack of the name, which keeps its own deadline, or appends the item. False, with no
    // effect, for an invalid item.
    bool AddItem(FGameItem item);
    // Removes num pieces, or all if there are fewer, and deletes an empty stack. False, with no effect, if num is below
    // 1 or GetItem returns null.
    bool UseItem(int index, int num);

    // The gift box, in the same way. Only Read fills it.

    // As GetItem.
    FGameItem* GetGiftBox(int index);
    // As DelItem.
    void DelGiftBox(int index);
    // Removes one piece, and deletes an empty stack. False, with no effect, if GetGiftBox returns null.
    bool UseGiftBox(int index);

    // Sets these bits of m_NewbieFlag.
    void AddNewbieFlag(int flag);
    // Whether any of the bits is set.
    bool HasNewbieFlag(int flag) const;

    // Unlocks all training games and clears their m_PlayTimes and m_CDDuration, but not a running cool-down. Does
    // nothing if clear is 0.
    void OnGetVIP(int clear);
    // Sets m_BestScore of all training games to that of a game never played.
    void DropVisitorScore();

    // The training string, for the account database. Its grammar:
    //
    //   games ::= { game-id "|" best-score "|" play-times "|" cool-down-seconds "|" locked "_" }
    //   dates ::= 20 times { date "|" slot "_" }
    //
    // Numbers are decimal ints, the score truncated toward zero, locked 0 or 1. The dates are the m_LastPlayTime of the
    // games that have an m_DateSlot from 0 to 19; the other slots are empty. Nothing is escaped.

    // Returns the valid games of m_TrainingMap and the 20 dates; empty if the map is empty.
    zet::String_T<wchar_t> SaveStringFromTraining();
    // Sets m_BestScore, m_PlayTimes, m_CDDuration and m_Locked of the games and stores dates in m_DateMap by slot. A
    // record with a ':' is a date. Missing fields of a record count as score -1, no plays, no cool-down, locked; games
    // with an invalid id, empty dates and dates of 100 units or more are dropped. Fill m_TrainingMap with the games
    // first: an entry created here keeps m_GameId 0.
    void LoadTrainingFromString(const zet::String_T<wchar_t>& text);

    // The item string, for the account database. Its grammar:
    //
    //   items ::= { name "|" pieces "|" seconds "=" }
    //
    // The seconds run from FGameItem::_DiscardStartTime to the deadline, 0 for none, and only their low 32 bits are
    // written. Nothing is escaped: a load drops a name with '|' or '=', and one of 50 units or more.

    // Returns the valid stacks of the bag.
    zet::String_T<wchar_t> SaveStringFromItem() const;
    // Appends a stack for each record of three fields that gives a valid item. Stacks do not merge here.
    void LoadItemFromString(const zet::String_T<wchar_t>& text);

    // These do nothing and exist for hosts to call: energy, gifts, missions and the game tables belong to the hosts.
    void OnLostVIP();
    void RecountEnergyTime();
    void ClearNewFlag();
    void UnLock(int, int, int);
    void ResetMissionMap();
    void ResetTrainingMap();
    void ResetRushMap();
    void ResetMusicMap();
    void ResetBrainMap();
    void ResetCalorie();
    void CheckGiftOutOfDate();
    void LoadMissionFromString(const zet::String_T<wchar_t>&);
    void LoadGiftFromString(const zet::String_T<wchar_t>&);
    void AddGiftBox(const FGameItem&);
    // These return 0, null or an empty text.
    int GetGiftBoxLeftDay(int) const;
    FGameMission* GetMission(int);
    zet::String_T<wchar_t> SaveStringFromMission() const;
    zet::String_T<wchar_t> SaveStringFromGift() const;

    int m_AccountId = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_AccountNote;
    // Counters m_Value0 to m_Value7, carried.
    int m_Value0 = 0;
    int m_Value1 = 0;
    int m_Value2 = 0;
    // Known to the hosts only.
    int m_Allowance[kAllowances] = {10, 10, 10, 10, 10, 10, 10};
    int m_Value3 = 0;
    int m_Value4 = 0;
    // The finished steps of the newcomer's course, one bit each.
    int m_NewbieFlag = 0;
    int m_Value5 = 0;
    int m_Value6 = 0;
    int m_Value7 = 0;
    bool m_Flag = false; // carried
    // The camera game that is not in a map.
    FGameKinect m_KinectGame;
    // Training games by game id.
    std::map<int, FGameTraining> m_TrainingMap;
    // Dates of play by slot.
    std::map<int, zet::String_T<wchar_t>> m_DateMap;
    // Camera games by game id.
    std::map<int, FGameKinect> m_KinectMap;
    // The bag, and the gift box.
    std::vector<FGameItem> m_ItemList;
    std::vector<FGameItem> m_GiftBox;
};
