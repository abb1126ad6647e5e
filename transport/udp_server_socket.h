// A UDP port and the command connections that were accepted on it.
#pragma once

#include "framework/dictionary.h"
#include "net/quic/connection.h"

// Holds the connections that it accepted. A host derives from it and accepts a UdpClientSocket of its own in
// onAccept(), its analyser filled.
class COMMONGROUND_API UdpServerSocket : public zet::UdpServer
{
public:
    using ClientSockets =
        zet::Dictionary<zet::UdpServer::UdpConnection*, zet::Unknown::Handle_T<zet::UdpServer::UdpConnection>>;

    // A server without a port.
    static zet::Unknown::Handle_T<UdpServerSocket> createInstance();
    // Calls close() of this class.
    ~UdpServerSocket() override;

    // The server holds the connection from then on. False changes nothing.
    bool accept(zet::UdpServer::UdpConnection* connection) override;
    // Abandons the connection.
    void onEnd(zet::UdpServer::UdpConnection* connection) override;

    // Listens, and stores the address as this server's; an empty one is replaced by the name of this machine.
    virtual bool listen(const zet::String_T<wchar_t>& ip, unsigned short port);
    bool listen(unsigned short port) override;
    bool attach(unsigned int handle) override;
    // Releases a connection, which closes unless another handle holds it. A connection that the host closes outside the
    // tick of that connection is held until this is called.
    virtual void abandon(zet::UdpServer::UdpConnection* connection);

    // What listen() stored; empty before.
    const zet::String_T<wchar_t>& GetIP() const { return m_IP; }
    // The bound port; 0 before listen() and attach().
    unsigned short GetPort() const { return m_Port; }
    // The number of connections that the server holds.
    int GetClientCount() const { return m_ClientSockets.getSize(); }
    // For walks. Only the operations of this class change it: a walker may call abandon(), but not erase().
    ClientSockets* GetAllClientSocket() { return &m_ClientSockets; }

    const wchar_t* getClassName() const override { return L"UdpServerSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    UdpServerSocket() = default;

    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port = 0;
    ClientSockets m_ClientSockets;

private:
    // Always true.
    bool keepAddress(const zet::String_T<wchar_t>& ip);
};
