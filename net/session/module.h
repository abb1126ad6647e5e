// The module that net sessions belong to: the System they run in, the port they come by, their limits.
#pragma once

#include "framework/packet.h"
#include "net/tcp/server.h"

namespace zet
{

// Carries sessions over TCP. Started in a System; with listen() it takes visitors too, and a host that wants them
// derives from it:
//
//   void onAccept() override
//   {
//       const auto session = CNetSession::createInstance(this, &m_Analyser);
//       if (session->accept())
//           m_Sessions.push_back(session);
//   }
//
// The module holds no session: the host does. It stays as long as its sessions connect, accept or send. Filters of
// addresses are those of the server; close() ends the listening alone.
class COMMONGROUND_API NetModule : public TcpServer
{
public:
    // Bytes of a message: the largest stream frame of a command, and room for a class name and thousands of addresses.
    static constexpr int kDefaultMessageLimit = PacketReader::kDefaultLimit + 0x10000;

    static Unknown::Handle_T<NetModule> createInstance();

    // Bytes that a message may have, sent or received, class name included, from the next session on. A longer one is
    // not sent; one that a peer announces ends the session with Evt_NetError. 1 to
    // PacketReader::kLargestLimit; what lies outside counts as the nearer one.
    void setMessageLimit(int bytes) { m_MessageLimit = bytes; }
    int getMessageLimit() const { return m_MessageLimit; }
    // Bytes that may wait to be sent, from the next session on; a peer that takes none of them loses its session.
    void setOutputLimit(size_t bytes) { m_OutputLimit = bytes; }
    size_t getOutputLimit() const { return m_OutputLimit; }

    const wchar_t* getClassName() const override { return L"zet::NetModule"; }

private:
    int m_MessageLimit = kDefaultMessageLimit;
    size_t m_OutputLimit = TcpConnection::kDefaultOutputLimit;
};

} // namespace zet
