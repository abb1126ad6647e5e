#include "net/tcp/inner/ready_list.h"

#include "framework/inner/make_room.h"
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
    if (!std::exchange(connection.m_IsListed, false) || std::erase(m_Next, &connection) > 0)
        return;
    std::erase(m_Now, &connection);
    std::make_heap(m_Now.begin(), m_Now.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
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
    if (m_IsWalking && (!m_Current || isBefore(m_Current, &connection)))
        push(&connection);
    else
        m_Next.push_back(&connection);
}

void ReadyList::push(TcpConnection* connection) noexcept
{
    m_Now.push_back(connection);
    std::push_heap(m_Now.begin(), m_Now.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
}

void ReadyList::begin(const TcpConnection* first)
{
    // A nested walk takes over what the outer one has left.
    end();
    m_First = first;
    m_Current = nullptr;
    m_IsWalking = true;
    m_IsPressing = false;
    for (TcpConnection* const each : m_Always)
        addWaiting(*each);
    for (TcpConnection* const each : m_Next)
        push(each);
    m_Next.clear();
}

void ReadyList::take()
{
    std::pop_heap(m_Now.begin(), m_Now.end(), [this](auto* a, auto* b) { return isBefore(b, a); });
    TcpConnection* const taken = m_Now.back();
    m_Now.pop_back();
    taken->m_IsListed = false;
    m_Current = taken;
}

void ReadyList::end()
{
    // A walk mostly reaches its end.
    if (!m_Now.empty())
    {
        m_Next.insert(m_Next.end(), m_Now.begin(), m_Now.end());
        m_Now.clear();
        m_IsPressing = true;
    }
    m_IsWalking = false;
}

} // namespace zet::inner
