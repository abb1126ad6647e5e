#include "transport/framework_client_proxy_socket.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/quillo/app_log.h"
#include "framework/string_helper.h"

#include <cstring>

namespace
{

// The values of RFC 1928 and, for the account, RFC 1929.
constexpr unsigned char kSocksVersion = 5;
constexpr unsigned char kOneMethod = 1;
constexpr unsigned char kNoCheck = 0;
constexpr unsigned char kAccountCheck = 2;
constexpr unsigned char kAccountVersion = 1;
constexpr unsigned char kAccountGood = 0;
constexpr unsigned char kConnect = 1;
constexpr unsigned char kReserved = 0;
// The second byte of a reply that grants what was asked for.
constexpr unsigned char kGranted = 0;
constexpr unsigned char kAddressOfFourBytes = 1;

// Bytes that one tick receives from the proxy at most.
constexpr int kMostReply = 1023;

// Each report goes to the process's log and to the engine's log.
template <class... Args>
void report(const wchar_t* pattern, const Args&... args)
{
    zet::Log::message(pattern, args...);
    Quillo::appLog(pattern, args...);
}

zet::String_T<char> toUtf8(const zet::String_T<wchar_t>& text)
{
    return zet::StringHelper::wideToUtf8(text);
}

// User name and password as they are sent to the proxy. The password is wiped from memory.
struct Account
{
    Account(const zet::String_T<wchar_t>& name, const zet::String_T<wchar_t>& password)
        : m_Name(toUtf8(name)), m_Password(toUtf8(password))
    {
    }
    ~Account() { zet::platform::wipe(m_Password); }
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;

    bool fits() const
    {
        constexpr int kMost = CFrameworkClientProxySocket::kMostAccountBytes;
        return m_Name.getLength() <= kMost && m_Password.getLength() <= kMost;
    }

    zet::String_T<char> m_Name;
    zet::String_T<char> m_Password;
};

} // namespace

// The input of one tick. A reply that arrives in two ticks counts as two replies.
struct CFrameworkClientProxySocket::Reply
{
    bool begins(unsigned char first, unsigned char second) const
    {
        return m_Size >= 2 && m_Bytes[0] == first && m_Bytes[1] == second;
    }

    unsigned char m_Bytes[kMostReply] = {};
    int m_Size = 0;
};

CFrameworkClientProxySocket::CFrameworkClientProxySocket(CCmdAnalyserSocket* analyser)
    : CFrameworkClientSocket(analyser)
{
}

void CFrameworkClientProxySocket::SetProxy(zet::String_T<wchar_t> ip, unsigned short port,
                                           zet::String_T<wchar_t> account, zet::String_T<wchar_t> password)
{
    m_ProxyIP = std::move(ip);
    m_ProxyPort = port;
    m_ProxyAccount = std::move(account);
    zet::platform::wipe(m_ProxyPassword);
    // Copied and wiped, since moving a short text leaves its characters in memory.
    m_ProxyPassword = static_cast<const zet::String_T<wchar_t>&>(password);
    zet::platform::wipe(password);
}

CFrameworkClientProxySocket::~CFrameworkClientProxySocket()
{
    zet::platform::wipe(m_ProxyPassword);
}

bool CFrameworkClientProxySocket::connect(const wchar_t* ip, unsigned short port, bool keepAlive)
{
    m_TargetIP = ip;
    m_TargetPort = port;
    const bool hasProxy = !m_ProxyIP.isEmpty() && m_ProxyPort != 0;
    // The handshake with the proxy is not encrypted; TLS is for the target.
    if (getTlsContext())
        delayTls(hasProxy);
    if (hasProxy)
        return connectProxy(keepAlive);
    if (!CFrameworkClientSocket::connect(m_TargetIP, port, keepAlive))
        return false;
    // The host may release the last handle.
    const Handle_T<CFrameworkClientProxySocket> keep = getRefCount() > 0 ? this : nullptr;
    OnProxyWorking();
    m_ProxyState = kWorking;
    return true;
}

bool CFrameworkClientProxySocket::connectProxy(bool keepAlive)
{
    // An account that cannot be sent would leave the socket waiting for ever.
    const bool canSend = !hasAccount() || Account(m_ProxyAccount, m_ProxyPassword).fits();
    if (!canSend || !CFrameworkClientSocket::connect(m_ProxyIP, m_ProxyPort, keepAlive))
    {
        m_ProxyState = kNoProxy;
        report(L"connect proxy %s:%d error", m_ProxyIP, m_ProxyPort);
        return false;
    }
    m_ProxyState = kAwaitsMethod;
    holdConnectTime(true);
    // While connecting, the greeting waits in the output queue.
    report(L"connect proxy %s:%d success, waiting for socks5 reply", m_ProxyIP, m_ProxyPort);
    if (hasAccount())
        SendAccountCheck();
    else
        SendNoNameCheck();
    return true;
}

void CFrameworkClientProxySocket::onTick(unsigned int tick)
{
    if (isInvalid())
        return;
    if (m_ProxyState == kWorking)
    {
        CCommandSocket::onTick(tick);
        return;
    }
    if (m_ProxyState < kAwaitsMethod || m_ProxyState > kWorking)
        return;
    const Handle_T<CFrameworkClientProxySocket> keep = getRefCount() > 0 ? this : nullptr;
    look();
    // Below the stream and the secure layer: these are the proxy's bytes, not the target's.
    Reply reply;
    reply.m_Size = TcpConnection::receive(reply.m_Bytes, kMostReply);
    if (reply.m_Size == kMostReply)
        hurry();
    tickBelow();
    if (m_ProxyState == kAwaitsMethod)
        takeMethod(reply);
    else if (m_ProxyState == kAwaitsAccountCheck)
        takeAccountCheck(reply);
    else if (m_ProxyState == kAwaitsTarget)
        takeTarget(reply);
}

void CFrameworkClientProxySocket::takeMethod(const Reply& reply)
{
    // Any other reply, including a refusal, is dropped, and the next tick reads again.
    noteAnswer(reply);
    if (reply.m_Size != 2)
        return;
    if (reply.begins(kSocksVersion, kNoCheck))
    {
        m_ProxyState = kAwaitsTarget;
        report(L"Check proxy %s:%d ok, send real address code", m_ProxyIP, m_ProxyPort);
        SendTargetAddress();
    }
    else if (reply.begins(kSocksVersion, kAccountCheck))
    {
        m_ProxyState = kAwaitsAccountCheck;
        // The log contains the password: whoever can read it can use the proxy.
        report(L"Check proxy %s:%d ok, send account name %s & pwd %s", m_ProxyIP, m_ProxyPort, m_ProxyAccount,
               m_ProxyPassword);
        SendAccountID();
    }
}

void CFrameworkClientProxySocket::takeAccountCheck(const Reply& reply)
{
    // A refused password is not reported; the state stays.
    noteAnswer(reply);
    if (!reply.begins(kAccountVersion, kAccountGood))
        return;
    m_ProxyState = kAwaitsTarget;
    report(L"Check proxy account %s:%d ok, send real address code", m_ProxyIP, m_ProxyPort);
    SendTargetAddress();
}

void CFrameworkClientProxySocket::takeTarget(const Reply& reply)
{
    // Any reply ends the handshake, including a refusal: the proxy then closes, which the command layer sees. The input
    // of this tick is the reply: bytes of the target that arrived in the same tick are lost, and the second part of a
    // reply in two ticks goes to the command layer. If the target waits for the first command, nothing is lost.
    if (reply.m_Size <= 0)
        return;
    noteAnswer(reply);
    report(L"Check proxy %s:%d ok, Start Working", m_ProxyIP, m_ProxyPort);
    m_ProxyState = kWorking;
    holdConnectTime(false);
    if (getTlsContext() && !startTls(m_TargetIP))
    {
        // Data was queued too early and would be sent without encryption.
        close();
        return;
    }
    OnProxyWorking();
}

// If the proxy ends the connection after a refusal, that is the cause. A later reply without one takes it back.
void CFrameworkClientProxySocket::noteAnswer(const Reply& reply)
{
    if (reply.m_Size <= 0)
        return;
    forgetCause();
    const unsigned char answer = reply.m_Size > 1 ? reply.m_Bytes[1] : 0;
    const bool isMethod = m_ProxyState == kAwaitsMethod;
    if (isMethod ? answer != kNoCheck && answer != kAccountCheck : answer != kGranted)
        noteCause({zet::EndCause::kProxy, answer});
}

bool CFrameworkClientProxySocket::sendBare(const unsigned char* message, size_t size)
{
    return TcpConnection::send(message, static_cast<int>(size)) > 0;
}

bool CFrameworkClientProxySocket::SendNoNameCheck()
{
    const unsigned char message[] = {kSocksVersion, kOneMethod, kNoCheck};
    return sendBare(message, sizeof message);
}

bool CFrameworkClientProxySocket::SendAccountCheck()
{
    // The account is the only method offered; a proxy that requires none refuses it.
    const unsigned char message[] = {kSocksVersion, kOneMethod, kAccountCheck};
    return sendBare(message, sizeof message);
}

bool CFrameworkClientProxySocket::SendAccountID()
{
    const Account account(m_ProxyAccount, m_ProxyPassword);
    if (!account.fits())
        return false;
    unsigned char message[1 + 2 * (1 + kMostAccountBytes)];
    size_t size = 0;
    message[size++] = kAccountVersion;
    for (const zet::String_T<char>* text : {&account.m_Name, &account.m_Password})
    {
        const auto length = static_cast<size_t>(text->getLength());
        message[size++] = static_cast<unsigned char>(length);
        std::memcpy(message + size, text->getBuffer(), length);
        size += length;
    }
    const bool isSent = sendBare(message, size);
    zet::platform::wipe(message, sizeof message);
    return isSent;
}

bool CFrameworkClientProxySocket::SendTargetAddress()
{
    const zet::String_T<char> target = toUtf8(m_TargetIP);
    if (!gethostbyname(target))
        return false;
    // Not the resolver's result: a name that only the resolver knows is sent as FF FF FF FF.
    const unsigned int address = inet_addr(target);
    constexpr size_t kHead = 4;
    unsigned char message[kHead + sizeof address + 2] = {kSocksVersion, kConnect, kReserved, kAddressOfFourBytes};
    std::memcpy(message + kHead, &address, sizeof address);
    message[kHead + sizeof address] = static_cast<unsigned char>(m_TargetPort >> 8);
    message[kHead + sizeof address + 1] = static_cast<unsigned char>(m_TargetPort);
    return sendBare(message, sizeof message);
}

void CFrameworkClientProxySocket::OnProxyWorking() {}

const wchar_t* CFrameworkClientProxySocket::getClassTimestamp() const
{
    // One stamp for both classes.
    return CFrameworkClientSocket::getClassTimestamp();
}
