#include "net/tcp/inner/ready_list.h"

#include "framework/inner/make_room.h"
#include "net/inner/fetch.h"
#include "net/tcp/connection.h"

#include <algorithm>
#include <functional>

namespace zet::inner
{

bool ReadyList::isBefore(const TcpConnection* a, const TcpConnection* b) const
{
    const std::less<const TcpConnection*> less;
    const bool isWrappedA = less(a, m_First);
    const bool isWrappedB = less(b, m_First);
    return isWrappedA == isWrappedB ? less(a, b) : isWrappedB;
}

void ReadyList::enter(TcpConnection& connection, bool isAlways)
{
    if (connection.m_ReadyList != this)
    {
        makeRoom(m_Now, m_Members + 1);
        makeRoom(m_Late, m_Members + 1);
        makeRoom(m_Next, m_Members + 1);
        if (isAlways)
            m_Always.push_back(&connection);
        // Another server may accept a closed object that its former server has not abandoned yet.
        if (connection.m_ReadyList)
            connection.m_ReadyList->leave(connection);
        ++m_Members;
        connection.m_ReadyList = this;
        connection.m_IsListed = false;
    }
    if (!std::exchange(connection.m_IsListed, true))
        m_Next.push_back(&connection);
    m_IsPressing = true;
}

void ReadyList::leave(TcpConnection& connection)
{
    if (connection.m_ReadyList != this)
        return;
    connection.m_ReadyList = nullptr;
    --m_Members;
    std::erase(m_Always, &connection);
    if (!std::exchange(connection.m_IsListed, false) || std::erase(m_Next, &connection) > 0 ||
        std::erase(m_Now, &connection) > 0)
        return;
    std::erase(m_Late, &connection);
    std::make_heap(m_Late.begin(), m_Late.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
}

void ReadyList::add(TcpConnection& connection) noexcept
{
    if (connection.m_ReadyList == this)
        m_IsPressing = true;
    addWaiting(connection);
}

void ReadyList::addWaiting(TcpConnection& connection) noexcept
{
    if (connection.m_ReadyList != this || std::exchange(connection.m_IsListed, true))
        return;
    if (!m_IsWalking || (m_Current && !isBefore(m_Current, &connection)))
    {
        m_Next.push_back(&connection);
        return;
    }
    m_Late.push_back(&connection);
    std::push_heap(m_Late.begin(), m_Late.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
}

void ReadyList::begin(const TcpConnection* first)
{
    // A nested walk takes over what the outer one has left.
    if (m_IsWalking)
        end();
    m_First = first;
    m_Current = nullptr;
    m_IsPressing = false;
    for (TcpConnection* const each : m_Always)
        addWaiting(*each);
    if (!m_Next.empty())
        arrange();
    m_IsWalking = true;
}

void ReadyList::arrange()
{
    m_Now.swap(m_Next);
    std::sort(m_Now.begin(), m_Now.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
}

void ReadyList::take()
{
    TcpConnection* taken;
    if (m_Late.empty() || !isLateNext()) [[likely]]
    {
        taken = m_Now.back();
        m_Now.pop_back();
        if (!m_Now.empty())
            fetch<9>(m_Now.back());
    }
    else
    {
        std::pop_heap(m_Late.begin(), m_Late.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
        taken = m_Late.back();
        m_Late.pop_back();
    }
    taken->m_IsListed = false;
    m_Current = taken;
}

void ReadyList::end()
{
    // A walk mostly reaches its end.
    if (peek())
    {
        for (auto* const rest : {&m_Now, &m_Late})
        {
            m_Next.insert(m_Next.end(), rest->begin(), rest->end());
            rest->clear();
        }
        m_IsPressing = true;
    }
    m_IsWalking = false;
}

} // namespace zet::inner
