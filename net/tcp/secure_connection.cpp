#include "net/tcp/secure_connection.h"

#include "framework/inner/moment.h"
#include "framework/time.h"
#include "net/inner/end_log.h"
#include "net/inner/secure_module.h"
#include "net/limits.h"
#include "net/tcp/inner/link.h"
#include "net/tls/inner/layer.h"

#include <algorithm>

namespace zet
{

namespace
{

using inner::TlsLayer;

// Encrypted bytes that are collected before a system call.
constexpr size_t kSealAt = 128 * 1024;
// Reads of the socket in one receive() that may decrypt to nothing, such as alerts or new keys.
constexpr int kRounds = 16;

} // namespace

TcpSecureConnection::TcpSecureConnection() = default;

// TcpConnection's destructor would send the queue unencrypted.
TcpSecureConnection::~TcpSecureConnection()
{
    TcpSecureConnection::close();
}

TlsLayer* TcpSecureConnection::layer()
{
    inner::SecureModule* const module = m_Tls ? nullptr : inner::SecureModule::get();
    if (module)
        m_Tls = module->makeLayer();
    return m_Tls.get();
}

bool TcpSecureConnection::setTlsContext(TlsContext* context)
{
    if (!isInvalid())
        return false;
    // Without TLS this is false, and the log says why.
    if (context && !TlsContext::isAvailable())
        return context->servesClient();
    if (context)
        layer();
    if (m_Tls)
        m_Tls->m_Context = context;
    return true;
}

TlsContext* TcpSecureConnection::getTlsContext() const
{
    return m_Tls ? m_Tls->m_Context.get() : nullptr;
}

void TcpSecureConnection::setTlsHostName(const wchar_t* name)
{
    if (TlsLayer* const tls = layer())
        tls->m_SetHost = name ? name : L"";
}

void TcpSecureConnection::delayTls(bool isDelayed)
{
    if (TlsLayer* const tls = layer())
        tls->m_IsDelayed = isDelayed;
}

bool TcpSecureConnection::isSecure() const
{
    return m_Link && m_Tls && m_Tls->isDone();
}

bool TcpSecureConnection::isResumed() const
{
    return isSecure() && m_Tls->isResumed();
}

String_T<wchar_t> TcpSecureConnection::getVerifiedName() const
{
    return isSecure() ? m_Tls->getPeerName() : String_T<wchar_t>();
}

String_T<wchar_t> TcpSecureConnection::getTlsDescription() const
{
    return isSecure() ? m_Tls->getDescription() : String_T<wchar_t>();
}

bool TcpSecureConnection::expect(const wchar_t* host, TlsContext* context)
{
    if (context && layer())
        m_Tls->m_Context = context;
    if (!m_Tls)
        return !context;
    m_Tls->end();
    m_Tls->m_IsClient = host != nullptr;
    m_Tls->m_Host = host ? host : L"";
    if (!m_Tls->m_Context)
        return true;
    return host ? m_Tls->m_Context->servesClient() : m_Tls->m_Context->servesServer();
}

bool TcpSecureConnection::attach(unsigned int handle)
{
    if (!m_Tls || !m_Tls->m_Context || m_Tls->m_IsDelayed || m_Tls->isOn())
        return TcpConnection::attach(handle);
    // The host passed its own handle: expect() was not called.
    if (!m_Link)
    {
        m_Tls->m_IsClient = false;
        if (!m_Tls->m_Context->servesServer())
            return false;
    }
    if (!m_Tls->begin(getPeerName()))
    {
        noteCause({EndCause::kTls, 0});
        return false;
    }
    if (!TcpConnection::attach(handle))
    {
        m_Tls->end();
        return false;
    }
    return beginTls();
}

bool TcpSecureConnection::startTls(const wchar_t* host)
{
    if (getConnectionState() != kEstablished || !m_Tls || !m_Tls->m_Context || m_Tls->isOn() ||
        m_Link->m_Input.size() > 0 || m_Link->m_Output.size() > 0)
        return false;
    const String_T<wchar_t> before = m_Tls->m_Host;
    if (host)
        m_Tls->m_Host = host;
    if (m_Tls->begin(getPeerName()))
        return beginTls();
    m_Tls->m_Host = before;
    return false;
}

bool TcpSecureConnection::beginTls()
{
    m_State = kConnecting;
    clearPending(kEstablishedNow);
    m_Link->m_Sealed = &m_Tls->m_Sealed;
    setPending(kSecuring);
    m_Tls->m_Begun = getTimeTick();
    if (inner::Seat* const seat = m_Link->seat())
        seat->beginHandshake(getHandshakeTime());
    list();
    // The client sends first.
    if (m_Tls->m_IsClient)
        shakeHands();
    return true;
}

void TcpSecureConnection::onTick(unsigned int tick)
{
    // An event may release the last handle.
    const Handle_T<TcpSecureConnection> keep = getRefCount() > 0 ? this : nullptr;
    tickSecure(tick);
    reportEvents();
}

void TcpSecureConnection::tickSecure(unsigned int)
{
    tickConnection();
    if (isPending(kSecuring))
        secure();
}

void TcpSecureConnection::secure()
{
    const bool hasInput = m_State == kConnecting && (isPending(kReadable) || m_Tls->m_Input.size() > 0);
    inner::Seat* const seat = m_Link ? m_Link->seat() : nullptr;
    if (seat && seat->isTimed())
    {
        // The port limits the time of all handshakes and runs a bounded number of steps per tick.
        if (hasInput && seat->waitForStep())
            m_Reactor->hurry();
        return;
    }
    if (hasInput)
        shakeHands();
    if (!isPending(kSecuring) || m_State != kConnecting)
        return;
    if (getTimeTick() - m_Tls->m_Begun >= getHandshakeTime())
        failHandshake(L"it did not end in time", {EndCause::kTimedOut, EndCause::kHandshake});
    else
    {
        // The next tick checks the clock again.
        list();
        if (System* const system = getSystem())
            system->tickBy(m_Tls->m_Begun + getHandshakeTime());
    }
}

void TcpSecureConnection::stepHandshake()
{
    if (!isPending(kSecuring) || m_State != kConnecting)
        return;
    shakeHands();
    // The next tick reads the input after the handshake, or sees its end.
    if (isPending(kReadable | kSecureInput | kSecuring))
        list();
    if (m_State != kConnecting)
        hurry();
}

void TcpSecureConnection::endLateHandshake()
{
    if (isPending(kSecuring) && m_State == kConnecting)
        failHandshake(L"it did not end in time", {EndCause::kTimedOut, EndCause::kHandshake});
}

unsigned int TcpSecureConnection::getHandshakeTime() const
{
    const NetLimits* const limits = getLimits();
    const unsigned int time = limits ? limits->m_HandshakeLimit : 0;
    return time > 0 ? std::min(time, inner::kLongestTime) : m_Tls->m_Context->getHandshakeTime();
}

void TcpSecureConnection::endSecuring(bool isDone)
{
    clearPending(kSecuring);
    if (inner::Seat* const seat = m_Link->seat())
        seat->endHandshake(isDone);
}

void TcpSecureConnection::shakeHands()
{
    for (;;)
    {
        const auto result = m_Tls->shakeHands({m_Tls->m_Sealed, m_Reactor->pool()});
        if (result == TlsLayer::kFailed)
            return failHandshake(m_Tls->getFault(), m_Tls->getCause());
        if (!m_Link->m_IsOutputWaited)
            sendQueue(m_Tls->m_Sealed);
        if (m_State != kConnecting)
            return failHandshake(L"the connection broke", {EndCause::kReset, 0});
        if (result == TlsLayer::kDone)
            break;
        if (m_Tls->m_HandshakeInput > TlsContext::kHandshakeInput)
            return failHandshake(L"too long", {EndCause::kMalformed, 0});
        ConnectionState end = kBroken;
        const int got = fillInput(end);
        if (got < 0)
            return failHandshake(L"the peer has ended the connection", {EndCause::kClosedByPeer, 0});
        if (got == 0)
            return m_Tls->m_Input.settle(m_Reactor->pool());
        m_Tls->m_HandshakeInput += got;
    }
    endSecuring(true);
    setEstablished();
    noteSecureInput();
    m_Tls->m_Input.settle(m_Reactor->pool());
    joinReactor();
    if (m_State == kEstablished)
        announceOutput();
}

void TcpSecureConnection::failHandshake(const String_T<wchar_t>& reason, EndCause cause)
{
    endSecuring(false);
    inner::logFault(L"TLS handshake with %s failed: %s", reason, inner::peerNameOf<TcpConnection>, this);
    noteCause(cause);
    setEndLogged();
    // The peer should receive the alert.
    if (!m_Link->m_IsOutputWaited)
        sendQueue(m_Tls->m_Sealed);
    discardInput();
    fail(m_Tls->m_IsClient ? kConnectFailed : kBroken, cause);
}

// Receives encrypted bytes. Returns their number, 0 if there are none, -1 at the end.
int TcpSecureConnection::fillInput(ConnectionState& end)
{
    if (!isPending(kReadable))
        return 0;
    inner::InputBuffer& input = m_Tls->m_Input;
    const int room = input.prepare(m_Reactor->pool());
    if (room <= 0)
        return -1;
    const int got = receiveNow(input.end(), room, end);
    if (got > 0)
        input.grow(got);
    return got;
}

void TcpSecureConnection::noteSecureInput()
{
    if (m_Tls->hasInput())
        setPending(kSecureInput);
    else
        clearPending(kSecureInput);
}

int TcpSecureConnection::breakTls(const String_T<wchar_t>& reason, EndCause cause)
{
    inner::logFault(L"TLS with %s broke: %s", reason, inner::peerNameOf<TcpConnection>, this);
    setEndLogged();
    fail(kBroken, cause);
    return -1;
}

int TcpSecureConnection::receive(void* data, int size)
{
    if (!m_Tls || !m_Tls->isOn())
        return TcpConnection::receive(data, size);
    if (m_State != kEstablished)
        return m_State == kConnecting ? 0 : -1;
    if (!isWorthReceiving() || size <= 0)
        return 0;
    int got = TlsLayer::kNothingYet;
    for (int i = 0; i < kRounds; ++i)
    {
        got = m_Tls->open(data, size, {m_Tls->m_Sealed, m_Reactor->pool()});
        if (got != TlsLayer::kNothingYet)
            break;
        // The socket is read once the session has used all that was received.
        if (m_Tls->m_Input.size() > 0)
            continue;
        ConnectionState end = kBroken;
        const int more = fillInput(end);
        if (more < 0 && !isPending(kOutputLost))
            return breakTls(L"ended without close_notify", {EndCause::kCutOff, 0});
        if (more <= 0)
            break;
    }
    // Reading may have produced an alert or a new key.
    if (isPending(kOutputLost))
        m_Tls->m_Sealed.drop(&m_Reactor->pool());
    else if (m_Tls->m_Sealed.size() > 0 && !m_Link->m_IsOutputWaited)
        sendQueue(m_Tls->m_Sealed);
    if (m_State != kEstablished)
        return -1;
    if (got == TlsLayer::kFailed)
        return breakTls(m_Tls->getFault(), m_Tls->getCause());
    if (got <= 0 && isPending(kOutputLost) && !m_Tls->hasInput())
        return endLost() ? -1 : 0;
    if (got == TlsLayer::kEnded)
    {
        fail(kClosedByPeer, {EndCause::kClosedByPeer, 0});
        return -1;
    }
    noteSecureInput();
    m_Tls->m_Input.settle(m_Reactor->pool());
    return got;
}

void TcpSecureConnection::flush()
{
    if (!m_Tls || !m_Tls->m_Context || (m_Tls->m_IsDelayed && !m_Tls->isOn()))
        return TcpConnection::flush();
    clearPending(kOutput | kWritable);
    inner::OutputQueue& sealed = m_Tls->m_Sealed;
    if (m_State == kConnecting)
    {
        sendQueue(sealed);
        return;
    }
    if ((m_State != kEstablished && m_State != kClosedByPeer) || !m_Tls->isDone())
        return;
    inner::OutputQueue& output = m_Link->m_Output;
    do
    {
        while (output.size() > 0 && sealed.size() < kSealAt)
            if (!m_Tls->seal(output, {sealed, m_Reactor->pool()}))
            {
                breakTls(L"no more output can be encrypted", {EndCause::kTls, 0});
                return;
            }
        if (!sendQueue(sealed))
            return;
    } while (output.size() > 0);
}

unsigned int TcpSecureConnection::detach()
{
    const unsigned int handle = releaseHandle();
    if (m_Tls)
        m_Tls->end();
    reportEnd();
    return handle;
}

void TcpSecureConnection::close()
{
    if (m_Link && m_Tls && m_Tls->isDone() && (m_State == kEstablished || m_State == kClosedByPeer))
    {
        flush();
        if (getOutputSize() == 0)
        {
            m_Tls->sendCloseNotify({m_Tls->m_Sealed, m_Reactor->pool()});
            sendQueue(m_Tls->m_Sealed);
        }
    }
    shut();
    if (m_Tls)
        m_Tls->end();
    reportEnd();
}

} // namespace zet
