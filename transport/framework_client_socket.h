// A command connection with the identity of its peer.
#pragma once

#include "transport/command_socket.h"

// Used for a connection to a framework server, and by the server for each connection that it accepts. The host's
// handlers of the registration commands fill the identity fields.
class COMMONGROUND_API CFrameworkClientSocket : public CCommandSocket
{
public:
    // The server type of a peer that has not registered.
    static constexpr unsigned char kUnknownServerType = 0xFF;

    // Copy and move take the identity fields only, not the connection. A constructed copy shares the analyser. A move
    // copies texts, so it may throw.
    CFrameworkClientSocket(const CFrameworkClientSocket& other);
    CFrameworkClientSocket& operator=(const CFrameworkClientSocket& other);
    // NOLINTBEGIN(performance-noexcept-move-constructor)
    CFrameworkClientSocket(CFrameworkClientSocket&& other);
    CFrameworkClientSocket& operator=(CFrameworkClientSocket&& other);
    // NOLINTEND(performance-noexcept-move-constructor)

    // Stores the address, also if the attempt fails, and connects.
    bool connect(const wchar_t* ip, unsigned short port, bool keepAlive) override;

    // The identity of the peer: the fields of the same names below.
    unsigned char GetServerType() const { return m_ServerType; }
    const zet::Uuid& GetPeerServerId() const { return m_PeerServerId; }
    zet::String_T<wchar_t> GetVersion() const { return m_Version; }
    zet::String_T<wchar_t> GetServerName() const { return m_ServerName; }
    // The address passed to connect(); empty on an accepted connection.
    zet::String_T<wchar_t> GetIP() const { return m_IP; }
    unsigned short GetPort() const { return m_Port; }

    const wchar_t* getClassName() const override { return L"CFrameworkClientSocket"; }
    const wchar_t* getClassTimestamp() const override;

    unsigned char m_ServerType = kUnknownServerType;
    zet::Uuid m_PeerServerId;
    zet::String_T<wchar_t> m_Version;
    zet::String_T<wchar_t> m_ServerName;
    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port = 0;
    // Copied with the object and not touched otherwise.
    unsigned short m_Reserved = 0;
    // The id under which the server's dictionary holds this socket; all zero if it does not. The server sets it.
    zet::Uuid m_RegisteredId;

protected:
    // The analyser is not owned and outlives the socket.
    explicit CFrameworkClientSocket(CCmdAnalyserSocket* analyser);

private:
    void copyIdentity(const CFrameworkClientSocket& other);
};
