// Scripts of the pack features as one account plays them, one after the other.
#pragma once

#include "examples/arena/player/pack_client.h"

#include <functional>
#include <vector>

namespace arena::player
{

// Belongs to the thread of its System. What is given outlives it.
class PackCourse
{
public:
    using Script = std::function<host::Task(PackAccount&, PackClient&)>;

    PackCourse(Player& player, PackClient& packs, const zet::String_T<wchar_t>& name, std::vector<Script> scripts);

    // Starts the next script once the one before it has ended. False after the last one and once the connection has
    // ended. Call it from tick to tick.
    bool goOn();
    PackAccount& getAccount() { return m_Account; }

private:
    PackClient& m_Packs;
    const std::vector<Script> m_Scripts;
    size_t m_Next = 0;
    PackAccount m_Account;
};

} // namespace arena::player
