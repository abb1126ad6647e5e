// The library's ends over UDP against the test peer.
#pragma once

#include "tests/support/quic_peer.h"
#include "tests/support/tls_certificates.h"
#include "tests/support/udp_test.h"

#include <optional>

namespace test
{

// The base of QUIC's close codes for TLS alerts.
constexpr uint64_t kTlsAlert = 0x100;

// A test with one peer, which runs between the ticks.
class QuicTest : public UdpTest
{
protected:
    explicit QuicTest(const zet::UdpServer::Settings& settings = {}) : UdpTest(settings) {}
    void SetUp() override
    {
        UdpTest::SetUp();
        m_Net.m_Between = [this]
        {
            if (m_Peer)
                m_Peer->step();
        };
    }
    // A peer that connects to our server; a peer that waits for our client; and our client connected to it.
    void beginPeer(QuicWish wish = {}) { m_Peer.emplace(m_Net.m_Server->getPort(), std::move(wish)); }
    void waitForOurs(QuicWish wish = {})
    {
        static const Certificate certificate = Authority("Some Authority").issue({"", {"localhost"}});
        waitForOurs(certificate, std::move(wish));
    }
    void waitForOurs(const Certificate& certificate, QuicWish wish = {})
    {
        m_Peer.emplace(certificate, std::move(wish));
        m_Net.m_Road = m_Peer->getPort();
    }
    NoteSocketHandle beginToPeer(QuicWish wish = {})
    {
        waitForOurs(std::move(wish));
        return m_Net.begin();
    }
    // Runs until a peer's connection is established on both ends.
    bool connectPeer(QuicWish wish = {})
    {
        beginPeer(std::move(wish));
        // The id passed to a client's connect().
        m_Peer->send(std::string(16, 'i'));
        const size_t before = m_Net.m_Server->m_Accepted.size();
        return m_Net.until([&] { return m_Peer->isUp() && m_Net.m_Server->m_Accepted.size() > before; }, 2000);
    }
    // Whether a client of ours can still use our server.
    bool isServing()
    {
        m_Peer.reset();
        m_Net.m_Road = 0;
        return m_Net.connect() != nullptr;
    }
    static std::string messageOf(const CCmdHead& command)
    {
        CCmdPackager packager;
        EXPECT_TRUE(command.Write(&packager));
        std::string bytes(static_cast<size_t>(packager.Pack(nullptr, 0)), 0);
        packager.Pack(bytes.data(), static_cast<int>(bytes.size()));
        return static_cast<char>(bytes.size()) + ('\0' + bytes);
    }

    std::optional<QuicPeer> m_Peer;
};

// The kind of a packet by the first byte of its header.
inline bool isShort(unsigned char first)
{
    return !(first & 0x80);
}

inline bool isHandshake(unsigned char first)
{
    return (first & 0xB0) == 0xA0;
}

// A CRYPTO frame.
inline std::string cryptoFrame(const std::string& bytes, size_t offset = 0)
{
    const auto twoBytes = [](size_t number) {
        return std::string{static_cast<char>(0x40 | number >> 8), static_cast<char>(number)};
    };
    return '\x06' + twoBytes(offset) + twoBytes(bytes.size()) + bytes;
}

} // namespace test
