// The module of net sessions: their System, their port, their limits.
#pragma once

#include "framework/packet.h"
#include "net/tcp/server.h"

namespace zet
{

// Carries sessions over TCP. Started in a System. After listen() it also accepts sessions, for which a host derives
// from it:
//
//   void onAccept() override
//   {
//       const auto session = CNetSession::createInstance(this, &m_Analyser);
//       if (session->accept())
//           m_Sessions.push_back(session);
//   }
//
// The host holds the sessions, not the module. The module must outlive their calls of connect(), accept() and send().
// Address filters are those of the server; close() only stops listening.
class COMMONGROUND_API NetModule : public TcpServer
{
public:
    // A packet reader's default, and space for a class name and thousands of addresses.
    static constexpr int kDefaultMessageLimit = PacketReader::kDefaultLimit + 0x10000;

    static Unknown::Handle_T<NetModule> createInstance();

    // The maximum bytes of a message, sent or received, class name included, for later sessions. A longer one is not
    // sent; one that a peer announces ends the session with Evt_NetError. Clamped to 1 to PacketReader::kLargestLimit.
    void setMessageLimit(int bytes) { m_MessageLimit = bytes; }
    int getMessageLimit() const { return m_MessageLimit; }
    // The maximum bytes of queued output, for later sessions; a send beyond it ends the session.
    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    size_t getOutputLimit() const { return m_OutputLimit; }

    const wchar_t* getClassName() const override { return L"zet::NetModule"; }

private:
    int m_MessageLimit = kDefaultMessageLimit;
    size_t m_OutputLimit = TcpConnection::kDefaultOutputLimit;
};

} // namespace zet
