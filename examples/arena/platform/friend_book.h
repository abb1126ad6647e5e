// Who knows whom, what players show their friends, and the messages that wait for their receivers.
#pragma once

#include "framework/string.h"

#include <deque>
#include <map>
#include <set>

namespace arena::platform
{

class Database;

// Their names with separators fit into one text.
constexpr size_t kMostFriends = 15;
// As many messages wait for a player; a further one takes the place of the oldest.
constexpr int kFriendMessages = 6;

enum class FriendResult
{
    kDone,
    kUnknown, // no such account
    kFull,    // kMostFriends
    kBefore,  // a friend before
    kNoFriend,
    kFailed // the database failed
};

using FriendNames = std::set<zet::String_T<wchar_t>>;
// By the kinds that the caller gives them.
using FriendTexts = std::map<int, zet::String_T<wchar_t>>;

// Each blocks for one transaction, and changes nothing if it returns anything but kDone. A player is the number of its
// account; names become those of its friends after the change.
FriendResult readFriends(Database& database, int player, FriendNames& names);
// Also stores texts of the player itself.
FriendResult addFriend(Database& database, int player, const zet::String_T<wchar_t>& name, const FriendTexts& own,
                       FriendNames& names);
FriendResult removeFriend(Database& database, int player, const zet::String_T<wchar_t>& name, FriendNames& names);

// The account of a friend, and all its texts.
FriendResult readFriend(Database& database, int player, const zet::String_T<wchar_t>& name, int& account,
                        FriendTexts& texts);
FriendResult storeFriendTexts(Database& database, int player, const FriendTexts& own);

FriendResult sendToFriend(Database& database, int player, const zet::String_T<wchar_t>& name,
                          const zet::String_T<wchar_t>& message);
// The waiting messages, the oldest one first; they wait no longer.
FriendResult takeMessages(Database& database, int player, std::deque<zet::String_T<wchar_t>>& messages);

} // namespace arena::platform
