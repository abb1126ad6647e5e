// Replies of a proxy, in pieces, to the proxy socket; a second, simple implementation of the handshake predicts the
// effect of each piece. The first byte chooses whether there is an account. Each piece is two bytes of length, low byte
// first, and the bytes; an empty piece is a tick, and a piece longer than the rest of the input is that rest, after
// which the proxy closes.
#include "dispatch/analyser_socket.h"
#include "fuzz/support/budget.h"
#include "fuzz/support/require.h"
#include "transport/framework_client_proxy_socket.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

namespace
{

const std::string kRequest("\x05\x01\x00\x01\x0a\x01\x02\x03\x1f\x90", 10);
const std::string kAccount("\x01\x04name\x06secret", 13);
// The bytes that one tick reads.
constexpr size_t kMostReply = 1023;

using fuzz::require;

class Client final : public CFrameworkClientProxySocket
{
public:
    explicit Client(CCmdAnalyserSocket* analyser) : CFrameworkClientProxySocket(analyser) {}
    void OnProxyWorking() override { ++m_Workings; }

    int m_Workings = 0;
};

// The handshake by the proxy protocol's documents.
struct Model
{
    void take(const std::string& reply)
    {
        if (m_State == 1 && (reply == std::string("\5\0", 2) || reply == "\5\2"))
            go(reply[1] ? 3 : 2);
        else if (m_State == 3 && reply.substr(0, 2) == std::string("\1\0", 2))
            go(2);
        else if (m_State == 2 && !reply.empty())
            go(4);
    }
    void go(int state)
    {
        m_State = state;
        m_Said = state == 2 ? kRequest : state == 3 ? kAccount : std::string();
    }

    int m_State = 1;
    // What the client sends next.
    std::string m_Said;
};

// The proxy's end of the connection, and a client that has just sent its greeting.
class Handshake
{
public:
    explicit Handshake(bool hasAccount) : m_Client(new Client(&m_Analyser))
    {
        int ends[2];
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) == 0);
        m_End = ends[0];
        m_Client->start(&system());
        require(m_Client->attach(static_cast<unsigned int>(ends[1])));
        m_Client->SetProxy(L"127.0.0.1", 1080, hasAccount ? L"name" : L"", hasAccount ? L"secret" : L"");
        m_Client->m_TargetIP = L"10.1.2.3";
        m_Client->m_TargetPort = 0x1F90;
        m_Client->m_ProxyState = Client::kAwaitsMethod;
        m_HasAccount = hasAccount;
    }
    ~Handshake()
    {
        m_Client->close();
        m_Client->stop();
        if (m_End >= 0)
            ::close(m_End);
        system().tick();
    }

    void take(const std::string& piece)
    {
        if (!piece.empty() && !m_Client->isInvalid())
            require(::send(m_End, piece.data(), piece.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(piece.size()));
        size_t at = 0;
        do
        {
            const std::string reply = piece.substr(at, kMostReply);
            at += reply.size();
            tick(reply);
        } while (at < piece.size() && m_Model.m_State != Client::kWorking);
        // The command layer may need several ticks; it ends by closing or with an incomplete packet.
        for (int i = 0; i < 4 && m_Model.m_State == Client::kWorking; ++i)
            system().tick();
    }
    void hangUp()
    {
        ::close(m_End);
        m_End = -1;
        for (int i = 0; i < 3; ++i)
            system().tick();
        require(m_Client->m_ProxyState == m_Model.m_State);
        // Only the command layer closes the connection.
        require(m_Client->isInvalid() == (m_Model.m_State == Client::kWorking));
    }

private:
    void tick(const std::string& reply)
    {
        const bool wasWorking = m_Model.m_State == Client::kWorking;
        m_Model.m_Said.clear();
        m_Model.take(reply);
        if (m_Model.m_Said == kAccount && !m_HasAccount)
            m_Model.m_Said = std::string("\1\0\0", 3);
        system().tick();
        require(m_Client->m_ProxyState == m_Model.m_State);
        require(m_Client->m_Workings == (m_Model.m_State == Client::kWorking));
        if (wasWorking)
            return;
        require(!m_Client->isInvalid());
        char said[64];
        const ssize_t size = recv(m_End, said, sizeof said, 0);
        require(std::string(said, static_cast<size_t>(std::max<ssize_t>(size, 0))) == m_Model.m_Said);
    }
    static zet::System& system()
    {
        static zet::System* const one = []
        {
            auto* const made = new zet::System;
            made->init();
            return made;
        }();
        return *one;
    }

    CCmdAnalyserSocket m_Analyser;
    zet::Unknown::Handle_T<Client> m_Client;
    Model m_Model;
    int m_End = -1;
    bool m_HasAccount = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const fuzz::Budget budget(size);
    Handshake handshake(data[0] & 1);
    size_t at = 1;
    while (size - at >= 2)
    {
        const size_t length = data[at] | static_cast<size_t>(data[at + 1]) << 8;
        at += 2;
        const size_t there = std::min(length, size - at);
        handshake.take(std::string(reinterpret_cast<const char*>(data + at), there));
        at += there;
        if (there < length)
        {
            handshake.hangUp();
            break;
        }
    }
    return 0;
}
