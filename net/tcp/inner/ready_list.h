// The connections of one owner whose tick would find something to do.
#pragma once

#include "framework/platform/export.h"

#include <cstddef>
#include <vector>

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// Costs what is active, not what is there: a connection lists itself when something happens on it. A walk gives them in
// the order of their addresses in memory, from one of them on and around. Members leave before their list ends. Belongs
// to the owner's thread.
class COMMONGROUND_API ReadyList
{
public:
    ReadyList() = default;
    ReadyList(const ReadyList&) = delete;
    ReadyList& operator=(const ReadyList&) = delete;

    // The connection is a member from now on, and is listed for the next walk; with isAlways for each walk. Throws
    // std::bad_alloc, and changes nothing then. The other calls take no memory.
    void enter(TcpConnection& connection, bool isAlways);
    void leave(TcpConnection& connection);
    // Lists a member: for this walk where its turn is still to come, else for the next one.
    void add(TcpConnection& connection) noexcept;
    bool isEmpty() const { return m_Now.empty() && m_Next.empty(); }

    // A walk begins with the first member that is not before this address.
    void begin(const TcpConnection* first);
    // Whose turn is next; null at the end of the walk. take() takes it off the list.
    TcpConnection* peek() const { return m_Now.empty() ? nullptr : m_Now.front(); }
    void take();
    // Ends the walk. Those whose turn has not come are listed for the next one.
    void end();

private:
    bool isBefore(const TcpConnection* a, const TcpConnection* b) const;
    void push(TcpConnection* connection) noexcept;

    // A heap, the next one first; and those for the next walk.
    std::vector<TcpConnection*> m_Now;
    std::vector<TcpConnection*> m_Next;
    std::vector<TcpConnection*> m_Always;
    size_t m_Members = 0;
    const TcpConnection* m_First = nullptr;
    const TcpConnection* m_Current = nullptr;
    bool m_IsWalking = false;
};

} // namespace zet::inner
