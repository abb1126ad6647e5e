// Whole packets are taken straight from the input buffer, the others by the packet reader. Both must give the same,
// whatever a peer sends and however it is cut.
#include "framework/inner/fast_paths.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"
#include "tests/support/through.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::SlowClient;
using test::tickUntil;
using Bytes = std::vector<unsigned char>;

// What a server makes of a peer's bytes.
struct Result
{
    std::string m_Numbers;
    bool m_IsClosed = false;
    std::vector<std::wstring> m_Lines;

    bool operator==(const Result&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Result& result)
{
    return stream << result.m_Numbers << (result.m_IsClosed ? "closed" : "") << " with " << result.m_Lines.size()
                  << " log lines";
}

// The peer's address differs between two runs.
std::wstring withoutPort(const std::wstring& line)
{
    std::wstring kept;
    std::copy_if(line.begin(), line.end(), std::back_inserter(kept),
                 [](wchar_t unit) { return unit < L'0' || unit > L'9'; });
    return kept;
}

// Sends the bytes in pieces, each in a tick of its own.
Result resultOf(const Bytes& bytes, size_t piece, bool isSlow)
{
    Result result;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note)
                          { result.m_Numbers += std::to_string(note.m_Number) + ' '; });
    Loopback net(analyser);
    zet::Unknown::Handle_T<SlowClient> slow;
    if (isSlow)
        net.m_Server->m_Make = [&]
        {
            slow = new SlowClient(analyser);
            return ClientHandle(slow.get());
        };
    RawPeer peer(net);
    EXPECT_TRUE(peer.m_IsUp);
    net.accepted()->SetPacketLimit(200);
    const test::LogLines lines;
    for (size_t at = 0; at < bytes.size(); at += piece)
    {
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        peer.send(Bytes(begin, begin + static_cast<std::ptrdiff_t>(std::min(piece, bytes.size() - at))));
        for (int i = 0; i < 3; ++i)
            net.m_System.tick();
    }
    result.m_IsClosed = net.m_Server->GetClientCount() == 0;
    for (const std::wstring& line : lines.texts())
        result.m_Lines.push_back(withoutPort(line));
    if (isSlow)
    {
        EXPECT_GT(slow->m_Through.m_Views, 0);
    }
    return result;
}

Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

const Bytes kEmpty(4, 0);

void expectTheSame(const Bytes& bytes, const std::string& numbers, bool isClosed)
{
    for (const size_t piece : {size_t(1), size_t(3), size_t(4), size_t(5), size_t(23), bytes.size()})
    {
        const Result fast = resultOf(bytes, piece, false);
        EXPECT_EQ(fast, resultOf(bytes, piece, true)) << "in pieces of " << piece;
        EXPECT_EQ(fast.m_Numbers, numbers) << "in pieces of " << piece;
        EXPECT_EQ(fast.m_IsClosed, isClosed) << "in pieces of " << piece;
    }
}

TEST(PacketTick, WholeAndCutCommandsAreTheSameByBothWays)
{
    expectTheSame(joined({packetOf(NoteCommand(1)), packetOf(NoteCommand(2, 60)), packetOf(NoteCommand(3)),
                          packetOf(NoteCommand(4, 7))}),
                  "1 2 3 4 ", false);
}

TEST(PacketTick, EmptyPacketsAreSkippedByBothWays)
{
    expectTheSame(joined({kEmpty, packetOf(NoteCommand(1)), kEmpty, kEmpty, packetOf(NoteCommand(2)), kEmpty}), "1 2 ",
                  false);
}

TEST(PacketTick, InvalidFramesCostTheirLogLinesByBothWays)
{
    Bytes unknown = packetOf(NoteCommand(9));
    unknown[4] ^= 0xFF;
    // The last byte of its count.
    Bytes refused = packetOf(NoteCommand(9, 3));
    refused[refused.size() - 4] ^= 1;
    expectTheSame(joined({packetOf(NoteCommand(1)), {3, 0, 0, 0, 1, 2, 3}, unknown, refused, packetOf(NoteCommand(2))}),
                  "1 2 ", false);
}

TEST(PacketTick, ALengthAboveTheLimitClosesByBothWays)
{
    const Bytes tooLong = packetOf(NoteCommand(9, 200));
    ASSERT_GT(tooLong.size(), 204U);
    expectTheSame(joined({packetOf(NoteCommand(1)), packetOf(NoteCommand(2)), tooLong, packetOf(NoteCommand(3))}),
                  "1 2 ", true);
    expectTheSame(joined({packetOf(NoteCommand(1)), {0xFF, 0xFF, 0xFF, 0xFF}, packetOf(NoteCommand(3))}), "1 ", true);
}

TEST(PacketTick, ALastCommandThatIsCutIsNotHandledByEitherWay)
{
    Bytes bytes = joined({packetOf(NoteCommand(1)), packetOf(NoteCommand(2, 30))});
    bytes.pop_back();
    expectTheSame(bytes, "1 ", false);
}

// The reader asks the stream at least twice per packet.
class CountingClient : public test::Client
{
public:
    using Client::Client;
    const unsigned char* view(int size) override
    {
        ++m_Views;
        return Client::view(size);
    }

    int m_Views = 0;
};

TEST(PacketTick, WholePacketsInTheBufferAreTakenWithoutTheReader)
{
    if (!zet::inner::kHasFastPaths)
        GTEST_SKIP() << "without fast paths the reader passes all packets";
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    zet::Unknown::Handle_T<CountingClient> socket;
    net.m_Server->m_Make = [&]
    {
        socket = new CountingClient(analyser);
        return ClientHandle(socket.get());
    };
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    Bytes bytes;
    for (int i = 0; i < 100; ++i)
        bytes = joined({bytes, packetOf(NoteCommand(i))});
    ASSERT_TRUE(peer.send(bytes));
    socket->m_Views = 0;
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 100; }));
    EXPECT_LT(socket->m_Views, 20);
}

} // namespace
