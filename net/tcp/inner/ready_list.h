// The connections of one owner whose next tick has something to do.
#pragma once

#include "framework/export.h"

#include <cstddef>
#include <vector>

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// Its cost depends on the active connections, not on all: a connection lists itself when something happens on it. A
// walk returns them in the order of their addresses in memory, starting anywhere and wrapping around. Members leave
// before their list is destroyed. Belongs to the owner's thread.
class COMMONGROUND_API ReadyList
{
public:
    ReadyList() = default;
    ReadyList(const ReadyList&) = delete;
    ReadyList& operator=(const ReadyList&) = delete;

    // Makes the connection a member and lists it for the next walk; with isAlways for each walk. Throws std::bad_alloc
    // and changes nothing then. The other calls allocate nothing.
    void enter(TcpConnection& connection, bool isAlways);
    void leave(TcpConnection& connection);
    // Lists a member: for this walk if its turn has not passed yet, otherwise for the next one.
    void add(TcpConnection& connection) noexcept;
    // The same for a connection that waits for a time, and asks for the tick of that time itself.
    void addWaiting(TcpConnection& connection) noexcept;
    bool isEmpty() const { return m_Now.empty() && m_Late.empty() && m_Next.empty(); }
    // Whether a listed connection needs the next tick soon.
    bool isPressing() const { return m_IsPressing; }

    // Starts a walk at the first listed member that is not before this address.
    void begin(const TcpConnection* first);
    // The next connection; null at the end of the walk. take() removes it from the list.
    TcpConnection* peek() const
    {
        if (m_Late.empty()) [[likely]]
            return m_Now.empty() ? nullptr : m_Now.back();
        return isLateNext() ? m_Late.front() : m_Now.back();
    }
    void take();
    // Ends the walk. The remaining connections are listed for the next one.
    void end();

private:
    bool isBefore(const TcpConnection* a, const TcpConnection* b) const;
    // Makes the list for the next walk that of this one.
    void arrange();
    // REQUIRES: m_Late is not empty.
    bool isLateNext() const { return m_Now.empty() || isBefore(m_Late.front(), m_Now.back()); }

    // m_Now has the connections of this walk that were listed when it began, the next one last. m_Late is a heap of
    // those that were listed since, the next one first. m_Next is the list for the next walk.
    std::vector<TcpConnection*> m_Now;
    std::vector<TcpConnection*> m_Late;
    std::vector<TcpConnection*> m_Next;
    std::vector<TcpConnection*> m_Always;
    size_t m_Members = 0;
    const TcpConnection* m_First = nullptr;
    const TcpConnection* m_Current = nullptr;
    bool m_IsWalking = false;
    bool m_IsPressing = false;
};

} // namespace zet::inner
