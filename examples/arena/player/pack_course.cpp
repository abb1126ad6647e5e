#include "examples/arena/player/pack_course.h"

namespace arena::player
{

PackCourse::PackCourse(Player& player, PackClient& packs, const zet::String_T<wchar_t>& name,
                       std::vector<Script> scripts)
    : m_Packs(packs), m_Scripts(std::move(scripts)), m_Account(player, name)
{
}

bool PackCourse::goOn()
{
    if (m_Account.getTasks().getCount() > 0)
        return true;
    if (m_Next == m_Scripts.size() || m_Account.isInterrupted())
        return false;
    m_Account.getTasks().start(m_Scripts[m_Next++](m_Account, m_Packs));
    return true;
}

} // namespace arena::player
