#include "net/quic/connection.h"

#include "net/door/addresses.h"
#include "net/inner/end_log.h"
#include "net/inner/peer_text.h"
#include "net/quic/inner/udp_router.h"

#include <algorithm>
#include <cstring>

namespace zet
{

UdpServer::UdpConnection::~UdpConnection()
{
    UdpConnection::close();
}

bool UdpServer::UdpConnection::connect(UdpServer* server, const wchar_t* ip, unsigned short port, const Uuid& id)
{
    if (server)
        return server->UdpServer::connect(this, ip, port, id);
    return failConnect({EndCause::kNotStarted, 0}, ip, port);
}

bool UdpServer::UdpConnection::failConnect(EndCause cause, const wchar_t* ip, unsigned short port)
{
    // A connection that is held already has not ended.
    if (cause.m_Code != EndCause::kHeld)
        setFailure(cause);
    const String_T<wchar_t> target = formatText(L"%s:%d", ip ? ip : L"", port);
    inner::logEnd(
        inner::kConnectLine, cause, [](const void* text) { return *static_cast<const String_T<wchar_t>*>(text); },
        &target);
    return false;
}

void UdpServer::UdpConnection::reportEnd()
{
    settleCause({EndCause::kClosedHere, 0});
    // From here on the object may connect anew.
    const bool isConnect = isAttempt();
    const EndCause cause = getEndCause();
    const bool isDue = takeEnd();
    if (isDue && !isEndLogged())
        inner::logEnd(isConnect ? inner::kConnectLine : inner::kEndedLine, cause,
                      inner::peerNameOf<UdpServer::UdpConnection>, this);
    struct Last
    {
        ~Last()
        {
            if (m_IsDue)
                m_Connection.callEnd(m_Cause);
        }
        UdpConnection& m_Connection;
        const EndCause m_Cause;
        const bool m_IsDue;
    } const last{*this, cause, isDue};
    if (!std::exchange(m_IsEndTold, true))
        onClose();
}

void UdpServer::UdpConnection::closeFor(unsigned short reason)
{
    noteCause({EndCause::kHost, reason});
    close();
}

bool UdpServer::UdpConnection::isOver() const
{
    return !m_Link || (m_Link->end() != kEstablished && m_Link->available() == 0);
}

void UdpServer::UdpConnection::onTick(unsigned int)
{
    if (m_Link && m_Link->takeStanding())
    {
        m_State = kEstablished;
        callEstablished();
    }
    if (m_Link && m_Link->takeReceived())
        onReceive();
    if (m_Link && m_Link->takeConfirmed())
    {
        onSend();
        if (isOutputHigh() && getOutputSize() <= m_OutputMark / 2)
        {
            setOutputHigh(false);
            callWritable();
        }
    }
    if (!isOver())
        return;
    if (inner::UdpLink* const link = m_Link)
    {
        link->leaveOwner(link->end());
        link->close();
    }
    reportEnd();
}

int UdpServer::UdpConnection::receive(void* data, int size)
{
    if (isOver())
    {
        if (m_Link)
            m_State = m_Link->end();
        return -1;
    }
    const int count = std::min(size, m_Link->available());
    if (count <= 0)
        return 0;
    std::memcpy(data, m_Link->input(), static_cast<size_t>(count));
    m_Link->consume(count);
    return count;
}

int UdpServer::UdpConnection::send(const void* data, int size)
{
    if (size <= 0 || !m_Link || m_Link->outputSize() >= m_OutputLimit || !m_Link->send(data, size))
        return 0;
    if (m_Link->outputSize() >= m_OutputMark)
        setOutputHigh(true);
    return size;
}

void UdpServer::UdpConnection::close()
{
    m_IsEndTold = true;
    m_State = kDown;
    if (inner::UdpLink* const link = m_Link)
    {
        link->leaveOwner(kDown);
        settleCause({EndCause::kClosedHere, 0});
        link->noteCause(getEndCause());
        link->close();
    }
    reportEnd();
}

void UdpServer::UdpConnection::onSend() {}

void UdpServer::UdpConnection::onReceive() {}

int UdpServer::UdpConnection::available() const
{
    return m_Link ? m_Link->available() : 0;
}

void UdpServer::UdpConnection::onClose() {}

String_T<wchar_t> UdpServer::UdpConnection::getPeerName() const
{
    const inner::Endpoint peer = getPeer();
    return peer.isAny() && m_PeerPort == 0 ? String_T<wchar_t>() : inner::peerText(peer);
}

inner::Endpoint UdpServer::UdpConnection::getPeer() const
{
    return inner::Endpoint::ofV6(m_PeerBytes, m_PeerPort, m_PeerScope);
}

unsigned int UdpServer::UdpConnection::getPeerAddress() const
{
    return getPeer().v4();
}

bool UdpServer::UdpConnection::getPeerAddressIPv6(sockaddr_in6& address) const
{
    const inner::Endpoint peer = getPeer();
    if (peer.isV4() || peer.isAny())
        return false;
    address = inner::toIPv6(peer);
    return true;
}

size_t UdpServer::UdpConnection::getOutputSize() const
{
    return m_Link ? m_Link->outputSize() : 0;
}

unsigned long long UdpServer::UdpConnection::getRoundTripTime() const
{
    return m_Link ? m_Link->roundTripTime() : 0;
}

const unsigned char* UdpServer::UdpConnection::getInput() const
{
    return m_Link ? m_Link->input() : nullptr;
}

void UdpServer::UdpConnection::consume(int size)
{
    if (m_Link)
        m_Link->consume(std::min(size, m_Link->available()));
}

bool UdpServer::UdpConnection::takeBeginning()
{
    return std::exchange(m_HasBegun, false);
}

void UdpServer::UdpConnection::breakOff(EndCause cause)
{
    if (m_Link)
        m_Link->breakOff(cause);
}

} // namespace zet
