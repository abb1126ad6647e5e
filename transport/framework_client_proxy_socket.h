// A command connection that may reach its target through a SOCKS5 proxy.
#pragma once

#include "transport/framework_client_socket.h"

// Runs the handshake with the proxy on the bare connection and then carries commands. Without a proxy it connects
// directly. Belongs to its run thread, like every command socket.
// There is no timeout unless NetLimits::m_ConnectTime is set: if the proxy is silent, refuses or closes, the socket
// keeps its state and handle until the host closes it. A connect that has taken that time ends the same way, with its
// cause. Commands sent before OnProxyWorking() go to the proxy. A copy takes the fields, including the state, but
// no connection.
class COMMONGROUND_API CFrameworkClientProxySocket : public CFrameworkClientSocket
{
public:
    enum ProxyState
    {
        // Not connected, or the proxy was not reached. In this state, and in any not listed here, a tick does nothing.
        kNoProxy = 0,
        // The greeting was sent; waiting for the method.
        kAwaitsMethod = 1,
        // The target's address was sent; waiting for the reply.
        kAwaitsTarget = 2,
        // User name and password were sent; waiting for the reply.
        kAwaitsAccountCheck = 3,
        // The connection carries commands.
        kWorking = 4
    };

    // The maximum bytes of a user name or password in UTF-8; the message has one byte for each length.
    static constexpr int kMostAccountBytes = 255;

    // Overwrites the password in memory.
    ~CFrameworkClientProxySocket() override;
    CFrameworkClientProxySocket(const CFrameworkClientProxySocket&) = default;
    CFrameworkClientProxySocket(CFrameworkClientProxySocket&&) = default;
    CFrameworkClientProxySocket& operator=(const CFrameworkClientProxySocket&) = default;
    CFrameworkClientProxySocket& operator=(CFrameworkClientProxySocket&&) = default;

    // For the next connect(). An empty address or port 0 means no proxy. User name and password are used only together,
    // and both are logged when they are sent.
    void SetProxy(zet::String_T<wchar_t> ip, unsigned short port, zet::String_T<wchar_t> account,
                  zet::String_T<wchar_t> password);

    // Connects to the target, or to the proxy. Through a proxy the target is four numbers with points: what a name
    // resolves to is not sent. True means that the connection to the proxy was started, not the one to the target.
    // False if the connection fails at once; also, without a connection, if the user name or the password is too long.
    // GetIP() and GetPort() return the proxy's address, if there is a proxy.
    bool connect(const wchar_t* ip, unsigned short port, bool keepAlive) override;
    void onTick(unsigned int tick) override;

    // Called once the connection can carry commands. For the host; empty here. It may close the socket or release the
    // last handle to it.
    virtual void OnProxyWorking();

    const wchar_t* getClassName() const override { return L"CFrameworkClientProxySocket"; }
    const wchar_t* getClassTimestamp() const override;

    zet::String_T<wchar_t> m_ProxyIP;
    unsigned short m_ProxyPort = 0;
    zet::String_T<wchar_t> m_TargetIP;
    unsigned short m_TargetPort = 0;
    // One of ProxyState. It stays as it is when the socket closes.
    int m_ProxyState = kNoProxy;
    zet::String_T<wchar_t> m_ProxyAccount;
    zet::String_T<wchar_t> m_ProxyPassword;

protected:
    // The analyser is not owned and outlives the socket.
    explicit CFrameworkClientProxySocket(CCmdAnalyserSocket* analyser);

    // The messages to the proxy. True if the connection accepted the bytes.
    bool SendNoNameCheck();
    bool SendAccountCheck();
    // Sends nothing and returns false if the user name or the password is too long.
    bool SendAccountID();
    // Waits for the resolver. Sends nothing and returns false if it does not know the target.
    bool SendTargetAddress();

private:
    struct Reply;

    bool hasAccount() const { return !m_ProxyAccount.isEmpty() && !m_ProxyPassword.isEmpty(); }
    bool connectProxy(bool keepAlive);
    bool sendBare(const unsigned char* message, size_t size);
    void noteAnswer(const Reply& reply);
    void takeMethod(const Reply& reply);
    void takeAccountCheck(const Reply& reply);
    void takeTarget(const Reply& reply);
};
