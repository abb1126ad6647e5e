// Players of a process who play a script together: a race, a session, a lesson.
#pragma once

#include "framework/string.h"

#include <list>
#include <memory>
#include <vector>

namespace arena::player
{

class Player;

struct Group
{
    // Those who have not left, and the names of all in alphabetical order. A complete group takes no further player.
    std::vector<Player*> m_Players;
    std::vector<zet::String_T<wchar_t>> m_Names;
    // From 1 in the order of their first players.
    int m_Number = 0;
    unsigned int m_Begin = 0;
    bool m_IsComplete = false;
    // What it was made for is done.
    bool m_IsDone = false;
};

// The groups of a script. A group is complete when it is full, when all players of the process are in it, or some time
// after its first player came.
class Groups
{
public:
    static constexpr int kMost = 8;
    // Milliseconds.
    static constexpr unsigned int kGatherTime = 5000;

    // If isSerial, a group is not complete before the one before it has left.
    explicit Groups(bool isSerial = false) : m_IsSerial(isSerial) {}
    Groups(const Groups&) = delete;
    Groups& operator=(const Groups&) = delete;

    // Whether there is a group that is not complete.
    bool isGathering() const;
    // The groups that play or will play and are not done.
    int getPending() const;

private:
    friend class Place;

    const bool m_IsSerial;
    int m_Number = 0;
    std::list<std::shared_ptr<Group>> m_Groups;
};

// A player's place in a group, for the lifetime of the object.
class Place
{
public:
    Place(Player& player, Groups& groups);
    ~Place();
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    // Until the group is complete.
    bool isWaiting();
    // From 0 in the order of the names.
    int getNumber() const;
    int getSize() const { return static_cast<int>(m_Group->m_Names.size()); }
    Group& getGroup() const { return *m_Group; }
    // The script cannot go on: it is interrupted for each player who is still in the group.
    void breakUp();

private:
    Player& m_Player;
    Groups& m_Groups;
    std::shared_ptr<Group> m_Group;
};

} // namespace arena::player
