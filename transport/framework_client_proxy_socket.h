// A command connection that may reach its target through a SOCKS5 proxy.
#pragma once

#include "transport/framework_client_socket.h"

// Greets the proxy, tells it who asks and where to go, all on the bare connection, and only then lets commands run.
// Without a proxy it connects directly. Belongs to its run thread, as every command socket.
// Nothing watches the time here: with a proxy that is silent, refuses or hangs up, the socket stays in its state, and
// with its handle, until the host closes it. A host that sends commands before OnProxyWorking() sends them to the
// proxy. A copy takes the fields, the state among them, and no connection.
class COMMONGROUND_API CFrameworkClientProxySocket : public CFrameworkClientSocket
{
public:
    enum ProxyState
    {
        // Not connected, or the proxy was not reached. In this state, and in any that is not named here, a tick does
        // nothing.
        kNoProxy = 0,
        // The greeting is sent; the proxy is to choose the method.
        kAwaitsMethod = 1,
        // The target's address is sent; the proxy is to reach it.
        kAwaitsTarget = 2,
        // User name and password are sent; the proxy is to check them.
        kAwaitsAccountCheck = 3,
        // The connection carries commands.
        kWorking = 4
    };

    // Bytes in UTF-8 that a user name or a password may have; the message has one byte for each length.
    static constexpr int kMostAccountBytes = 255;

    // Overwrites the password in memory.
    ~CFrameworkClientProxySocket() override;
    CFrameworkClientProxySocket(const CFrameworkClientProxySocket&) = default;
    CFrameworkClientProxySocket(CFrameworkClientProxySocket&&) = default;
    CFrameworkClientProxySocket& operator=(const CFrameworkClientProxySocket&) = default;
    CFrameworkClientProxySocket& operator=(CFrameworkClientProxySocket&&) = default;

    // For the next connect(). An empty address or port 0 means no proxy. User name and password count only together,
    // and the log tells them both when they are sent.
    void SetProxy(zet::String_T<wchar_t> ip, unsigned short port, zet::String_T<wchar_t> account,
                  zet::String_T<wchar_t> password);

    // Connects to the target, or to the proxy that is to reach it. The target is given as four numbers with points: a
    // name is not resolved on its way to the proxy. True says that the proxy is being reached, not the target. False
    // where the connection fails at once; also, with nothing connected and nothing sent, where the user name or the
    // password is too long to be told.
    // GetIP() and GetPort() give who was connected to: the proxy, where there is one.
    bool connect(const wchar_t* ip, unsigned short port, bool keepAlive) override;
    void onTick(unsigned int tick) override;

    // The connection can carry commands from now on. For the host; empty here. It may close the socket or let go of
    // the last handle to it.
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
    explicit CFrameworkClientProxySocket(CCmdAnalyserSocket* analyser);

    // The messages to the proxy. True where the connection took the bytes.
    bool SendNoNameCheck();
    bool SendAccountCheck();
    // Sends nothing and returns false where the user name or the password is too long.
    bool SendAccountID();
    // Sends nothing and returns false where the resolver, which it waits for, does not know the target.
    bool SendTargetAddress();

private:
    struct Reply;

    bool hasAccount() const { return !m_ProxyAccount.isEmpty() && !m_ProxyPassword.isEmpty(); }
    bool connectProxy(bool keepAlive);
    bool sendBare(const unsigned char* message, size_t size);
    void takeMethod(const Reply& reply);
    void takeAccountCheck(const Reply& reply);
    void takeTarget(const Reply& reply);
};
