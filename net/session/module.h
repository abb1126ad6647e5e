// The module of net sessions: their System, their port, their limits.
#pragma once

#include "framework/packet.h"
#include "net/tcp/server.h"

namespace zet
{

// Carries sessions over TCP; must be started in a System. After listen() it also accepts sessions. For that a host
// derives a class from it:
//
//   void onAccept() override
//   {
//       const auto session = CNetSession::createInstance(this, &m_Analyser);
//       if (session->accept())
//           m_Sessions.push_back(session);
//   }
//
// The host holds the sessions, not the module. The module must exist while a session's connect(), accept() or send() is
// called. Address filters are those of TcpServer. close() stops listening; sessions are not affected. Belongs to the
// thread of its System.
class COMMONGROUND_API NetModule : public TcpServer
{
public:
    // Bytes: a packet reader's default limit, plus 64 KiB for the other parts of a message.
    static constexpr int kDefaultMessageLimit = PacketReader::kDefaultLimit + 0x10000;

    // A module that is in no System and does not listen.
    static Unknown::Handle_T<NetModule> createInstance();

    // The maximum bytes of a message, sent or received, including its class name. Applies to sessions that connect or
    // are accepted later, clamped to the range from 1 to PacketReader::kLargestLimit. A longer message is not sent; if
    // a peer announces one, its session ends with Evt_NetError.
    void setMessageLimit(int bytes) { m_MessageLimit = bytes; }
    // The value that was set, not clamped.
    int getMessageLimit() const { return m_MessageLimit; }
    // The maximum bytes of queued output, for later sessions; a send beyond it ends the session.
    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    // Bytes; TcpConnection::kDefaultOutputLimit at first.
    size_t getOutputLimit() const { return m_OutputLimit; }

    const wchar_t* getClassName() const override { return L"zet::NetModule"; }

private:
    int m_MessageLimit = kDefaultMessageLimit;
    size_t m_OutputLimit = TcpConnection::kDefaultOutputLimit;
};

} // namespace zet
