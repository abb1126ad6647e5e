#include "tests/support/quic_hostile.h"

#include "tests/support/quic_peer.h"
#include "tests/support/tls_certificates.h"
#include "tests/support/udp_loopback.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace test
{

namespace
{

constexpr unsigned long long kMostNumber = (1ULL << 62) - 1;

unsigned long long bytesOf(const ByteSource& next, int count)
{
    unsigned long long number = 0;
    for (; count > 0; --count)
        number = number << 8 | next();
    return number;
}

// Small values are valid more often.
unsigned long long number(const ByteSource& next)
{
    const unsigned char choice = next();
    switch (choice >> 5)
    {
    case 5:
        return bytesOf(next, 2);
    case 6:
        return bytesOf(next, 4);
    case 7:
        return choice & 1 ? kMostNumber - (choice >> 1 & 7) : bytesOf(next, 8) & kMostNumber;
    default:
        return choice & 7;
    }
}

std::string encoded(unsigned long long number)
{
    const int bits = number < 1ULL << 6 ? 0 : number < 1ULL << 14 ? 1 : number < 1ULL << 30 ? 2 : 3;
    const int size = 1 << bits;
    std::string bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes += static_cast<char>(number >> (8 * i));
    bytes[0] = static_cast<char>(bytes[0] | bits << 6);
    return bytes;
}

std::string numbers(const ByteSource& next, int count)
{
    std::string bytes;
    for (; count > 0; --count)
        bytes += encoded(number(next));
    return bytes;
}

std::string anyBytes(const ByteSource& next, size_t count)
{
    // All of one value, except the first ones, so that a fuzzer need not provide each.
    std::string bytes;
    while (bytes.size() < std::min<size_t>(count, 8))
        bytes += static_cast<char>(next());
    bytes.resize(count, static_cast<char>(count));
    return bytes;
}

// A length and that many bytes; sometimes a wrong length.
std::string block(const ByteSource& next)
{
    const size_t size = next() % 64;
    const unsigned long long told = next() % 16 == 0 ? number(next) : size;
    return encoded(told) + anyBytes(next, size);
}

std::string ackFrame(const ByteSource& next, unsigned char type)
{
    const int ranges = next() % 16 == 0 ? 40 : next() % 4;
    const unsigned long long told = next() % 16 == 0 ? number(next) : static_cast<unsigned long long>(ranges);
    return static_cast<char>(type) + numbers(next, 2) + encoded(told) + numbers(next, 1 + 2 * ranges) +
           (type == 0x03 ? numbers(next, 3) : std::string());
}

std::string idFrame(const ByteSource& next)
{
    const size_t size = next() % 8 == 0 ? next() % 32 : 16;
    // Their numbers in order, as from an honest peer, and how many are retired.
    return '\x18' + numbers(next, 2) + static_cast<char>(size) + anyBytes(next, size) + anyBytes(next, 16);
}

std::string streamFrame(const ByteSource& next, unsigned char type)
{
    const unsigned long long stream = next() % 4 == 0 ? number(next) : 0;
    return static_cast<char>(type) + encoded(stream) + (type & 4 ? numbers(next, 1) : std::string()) +
           (type & 2 ? block(next) : anyBytes(next, next() % 64));
}

std::string cryptoOf(const ByteSource& next)
{
    const std::string head = '\x06' + numbers(next, 1);
    if (next() % 2)
        return head + block(next);
    // The start of a TLS message of any kind.
    const size_t size = next() % 32;
    const std::string message =
        static_cast<char>(next() % 32) + std::string(2, '\0') + static_cast<char>(size) + anyBytes(next, size);
    return head + encoded(message.size()) + message;
}

std::string wildFrame(const ByteSource& next)
{
    const unsigned char type = next() % 0x24;
    switch (type)
    {
    case 0x00:
        return std::string(1 + next() % 16, '\0');
    case 0x01:
    case 0x1E:
        return std::string(1, static_cast<char>(type));
    case 0x02:
    case 0x03:
        return ackFrame(next, type);
    case 0x04:
        return static_cast<char>(type) + numbers(next, 3);
    case 0x06:
        return cryptoOf(next);
    case 0x07:
        return static_cast<char>(type) + block(next);
    case 0x10:
    case 0x12:
    case 0x13:
    case 0x14:
    case 0x16:
    case 0x17:
    case 0x19:
        return static_cast<char>(type) + numbers(next, 1);
    case 0x05:
    case 0x11:
    case 0x15:
        return static_cast<char>(type) + numbers(next, 2);
    case 0x18:
        return idFrame(next);
    case 0x1A:
    case 0x1B:
        return static_cast<char>(type) + anyBytes(next, 8);
    case 0x1C:
        return static_cast<char>(type) + numbers(next, 2) + block(next);
    case 0x1D:
        return static_cast<char>(type) + numbers(next, 1) + block(next);
    case 0x20:
        return '\x30' + anyBytes(next, next() % 32);
    case 0x21:
        return '\x31' + block(next);
    case 0x22:
        return encoded(number(next)) + anyBytes(next, next() % 8);
    case 0x23:
        return anyBytes(next, next());
    default:
        return streamFrame(next, type);
    }
}

// A frame that an honest peer could send, so that the connection survives; age packets were sent before.
std::string tameFrame(const ByteSource& next, int age, bool isServer)
{
    const auto small = [&](int end) { return static_cast<char>(next() % end); };
    switch (next() % 16)
    {
    case 0:
        return std::string(1, '\x01');
    case 1:
    {
        const char largest = small(next() % 16 ? std::min(2 + age, 60) : 63);
        return std::string{'\x02', largest, small(8), '\0', static_cast<char>(largest > 0 ? next() % largest : 0)};
    }
    case 2:
    {
        const char largest = static_cast<char>(next() % 16 ? std::min(3 + age, 60) : 62);
        return std::string{'\x03',   largest,  small(8), '\x01',   small(2),
                           small(2), small(2), small(8), small(8), small(8)};
    }
    case 3:
        return '\x10' + encoded(1 + bytesOf(next, 3));
    case 4:
        return std::string("\x11\0", 2) + encoded(bytesOf(next, 3));
    case 5:
        return std::string{'\x12', small(8)};
    case 6:
        return std::string("\x15\0", 2) + numbers(next, 1);
    case 7:
    case 8:
    {
        const char number = static_cast<char>(1 + next() % 12);
        const char retired = next() % 3 == 0 ? number : '\0';
        return '\x18' + std::string{number, retired, '\x10'} + anyBytes(next, 16) + anyBytes(next, 16);
    }
    case 9:
        return std::string{'\x19', static_cast<char>(next() % 16 ? 1 : next() % 8)};
    case 10:
        return '\x1A' + anyBytes(next, 8);
    case 11:
        return '\x1B' + anyBytes(next, 8);
    case 12:
        // A TLS request for new keys.
        return '\x06' + encoded(next() % 2 ? bytesOf(next, 1) : 0) +
               std::string{'\x05', '\x18', '\0', '\0', '\x01', small(2)};
    case 13:
        if (isServer)
            return "\x1E";
        [[fallthrough]];
    default:
    {
        // Near the start of the stream, overlapping and after gaps.
        const std::string bytes = anyBytes(next, 1 + next() % 40);
        return std::string("\x0E\0", 2) + encoded(bytesOf(next, 1) * (1 + next() % 4)) + encoded(bytes.size()) + bytes;
    }
    }
}

std::string takeNumber(const std::string& bytes, size_t& at, unsigned long long& number)
{
    if (at >= bytes.size())
        return {};
    const size_t begin = at;
    const size_t size = size_t{1} << (static_cast<unsigned char>(bytes[at]) >> 6);
    number = static_cast<unsigned char>(bytes[at]) & 0x3F;
    for (size_t i = 1; i < size && at + i < bytes.size(); ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    at += size;
    return bytes.substr(begin, size);
}

std::string parameter(const ByteSource& next)
{
    // All valid ones are below, except three.
    static constexpr unsigned int kOthers[] = {0x20, 0x2AB2, 0x11, 0x1A};
    const unsigned int id = next() % 4 ? next() % 0x11 : kOthers[next() % 4];
    std::string value;
    switch (next() % 4)
    {
    case 0:
        value = anyBytes(next, next() % 64);
        break;
    case 1:
        value = anyBytes(next, 16);
        break;
    default:
        value = encoded(number(next));
        break;
    }
    return encoded(id) + encoded(next() % 16 == 0 ? number(next) : value.size()) + value;
}

class Meeting
{
public:
    explicit Meeting(const ByteSource& next) : m_Next(next)
    {
        const unsigned char options = next();
        m_IsOurServer = options & 1;
        m_Wish.m_IsEager = options & 2;
        m_Wish.m_IsJoining = (options & 4) || next() % 2;
        m_Wish.m_IdSize = (options & 8) && next() % 4 == 0 ? 0 : 16;
        m_Wish.m_TokenSize = (options & 16) || next() % 2 ? 200 : 0;
        if ((options & 32) && next() % 4 == 0)
            m_Wish.m_ChangeParams = [this](std::string& params) { changeParams(m_Next, params); };
        if (options & 64)
            m_Wish.m_BehindFinished = std::string(40, '\0');
        // Those of the handshake end a connection soon, so they are used less often.
        m_Kinds = next() % 8 ? 1 : next();
        m_Honest = next() % 2 ? next() % 8 : 0;
        m_Wish.m_ChangePayload = [this](unsigned char first, std::string& payload) { change(first, payload); };
    }

    void begin()
    {
        if (m_IsOurServer)
        {
            m_Peer = std::make_unique<QuicPeer>(m_Net.m_Server->getPort(), m_Wish);
            m_Peer->send(std::string(16, 'i'));
        }
        else
        {
            static const Certificate certificate = Authority("Some Authority").issue({"", {"localhost"}});
            m_Peer = std::make_unique<QuicPeer>(certificate, m_Wish);
            m_Net.m_Road = m_Peer->getPort();
            m_Ours = m_Net.begin();
            if (m_Ours)
                m_Ours->send(NoteCommand(1, 100));
        }
        m_Net.m_Between = [this] { m_Peer->step(); };
    }
    void goOn()
    {
        for (int rounds = 8 + m_Next() % 32; rounds > 0; --rounds)
        {
            const unsigned char choice = m_Next();
            if (m_IsOurServer && !m_Net.m_Server->m_Accepted.empty())
                m_Ours = m_Net.m_Server->m_Accepted.back();
            act(choice);
            for (int i = 0; i < 3; ++i)
                m_Net.step(1);
        }
    }
    int end()
    {
        m_Net.m_Between = nullptr;
        m_Peer.reset();
        m_Ours.clear();
        m_Net.m_Sockets.clear();
        m_Net.m_Server->m_Accepted.clear();
        // A peer that acknowledges late is waited for longer: three times ngtcp2's round trip estimate.
        for (int i = 0; i < 100; ++i)
            m_Net.step(10000);
        return m_Net.m_Server->getConnectionCount() + m_Net.m_Port->getConnectionCount();
    }

private:
    void change(unsigned char first, std::string& payload)
    {
        const unsigned char kind = !(first & 0x80) ? 1 : (first & 0x30) == 0x20 ? 2 : 4;
        if (!(m_Kinds & kind) || m_Honest-- > 0)
            return;
        payload = hostileFrames(m_Next, payload.size(), m_Age++, !m_IsOurServer);
    }
    void comeBy(void (QuicPeer::*change)())
    {
        (*m_Peer.*change)();
        m_Peer->send(std::string(60, 's'));
        m_Net.step();
    }
    void act(unsigned char choice)
    {
        switch (choice % 16)
        {
        case 0:
            comeBy(&QuicPeer::rebind);
            break;
        case 1:
            // Moves and moves back before the path is validated.
            comeBy(&QuicPeer::rebind);
            comeBy(&QuicPeer::rebindBack);
            break;
        case 2:
            if (m_IsOurServer)
                m_Peer->move();
            break;
        case 3:
            m_Net.m_Clock.advance(100);
            break;
        case 4:
            m_Net.m_Clock.advance(1000);
            break;
        case 5:
            m_Net.m_Clock.advance(static_cast<unsigned int>(choice) * 50);
            break;
        case 6:
        case 7:
            if (m_Ours)
                m_Ours->send(NoteCommand(2, choice * 100));
            break;
        case 8:
            if (m_Ours && choice & 128)
                m_Ours->close();
            break;
        default:
            m_Peer->send(std::string(40 + 4 * choice, 's'));
            break;
        }
    }

    const ByteSource& m_Next;
    bool m_IsOurServer = false;
    // The kinds of packets that are changed, and how many unchanged ones are sent before.
    unsigned char m_Kinds = 0;
    int m_Honest = 0;
    int m_Age = 0;
    QuicWish m_Wish;
    UdpNet m_Net;
    NoteSocketHandle m_Ours;
    std::unique_ptr<QuicPeer> m_Peer;
};

} // namespace

std::string hostileFrames(const ByteSource& next, size_t size, int age, bool isServer)
{
    const bool isWild = next() % 8 == 0;
    std::string frames;
    for (int count = 1 + next() % 8; count > 0 && frames.size() < size; --count)
    {
        const std::string one = isWild && next() % 4 == 0 ? wildFrame(next) : tameFrame(next, age, isServer);
        // A frame that does not fit is omitted; an invalid one may be truncated.
        if (isWild || frames.size() + one.size() <= size)
            frames += one;
    }
    if (frames.empty())
        frames = '\x01';
    return frames.substr(0, size);
}

void changeParams(const ByteSource& next, std::string& params)
{
    std::vector<std::string> all;
    for (size_t at = 0; at < params.size();)
    {
        unsigned long long id = 0;
        unsigned long long size = 0;
        std::string one = takeNumber(params, at, id);
        one += takeNumber(params, at, size);
        all.push_back(one + params.substr(std::min(at, params.size()), size));
        at += size;
    }
    for (int changes = 1 + next() % 4; changes > 0 && !all.empty(); --changes)
    {
        const auto place = all.begin() + next() % static_cast<int>(all.size());
        switch (next() % 4)
        {
        case 0:
            all.erase(place);
            break;
        case 1:
            all.push_back(*place);
            break;
        case 2:
            *place = place->substr(0, 1) + '\x08' + std::string(8, static_cast<char>(next()));
            break;
        default:
            all.push_back(parameter(next));
            break;
        }
    }
    params.clear();
    for (const std::string& one : all)
        params += one;
    if (next() % 16 == 0)
        params.resize(params.size() / 2);
}

int meetHostilePeer(const ByteSource& next)
{
    Meeting meeting(next);
    meeting.begin();
    meeting.goOn();
    return meeting.end();
}

} // namespace test
