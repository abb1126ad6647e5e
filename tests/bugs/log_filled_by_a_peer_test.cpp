// Each malformed frame cost two log lines, which are many times as long as the frame, so a peer could fill a disk in
// minutes and prolong the tick with formatting. A peer now has a share of the log: further lines are counted, and the
// number is logged with the next line and at the end of the connection. The statistics include the omitted lines.
#include "framework/peer_log.h"
#include "framework/time.h"
#include "runtime/openmetrics.h"
#include "runtime/system_cmd_info.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

// By value: on Windows the library's constants have no address outside the library.
constexpr unsigned int kBurst = zet::PeerLog::kBurst;

size_t countOf(const std::vector<std::wstring>& lines, const std::wstring& part)
{
    return static_cast<size_t>(std::count_if(
        lines.begin(), lines.end(), [&](const std::wstring& line) { return line.find(part) != std::wstring::npos; }));
}

struct Flood
{
    Flood()
        : m_Clock(1700000000, 1000), m_Analyser([this](CCommandSocket*, const test::NoteCommand&) { ++m_Handled; }),
          m_Net(m_Analyser), m_Peer(m_Net)
    {
    }

    // Sends invalid frames and then a command; true once the command is handled.
    bool send(int frames)
    {
        std::vector<unsigned char> bytes;
        for (int i = 0; i < frames; ++i)
        {
            const unsigned char packet[] = {3, 0, 0, 0, 1, 2, static_cast<unsigned char>(i)};
            bytes.insert(bytes.end(), std::begin(packet), std::end(packet));
        }
        const std::vector<unsigned char> note = test::packetOf(test::NoteCommand(1));
        bytes.insert(bytes.end(), note.begin(), note.end());
        const int before = m_Handled;
        return m_Peer.m_IsUp && m_Peer.send(bytes) &&
               test::tickUntil(m_Net.m_System, [&] { return m_Handled > before; });
    }

    zet::TestClock m_Clock;
    int m_Handled = 0;
    test::NoteAnalyser m_Analyser;
    test::Loopback m_Net;
    test::RawPeer m_Peer;
};

TEST(Bugs, APeersMalformedFramesHaveAShareOfTheLog)
{
    Flood flood;
    const test::LogLines lines;
    const unsigned long long before = zet::PeerLog::getLeftOut();
    ASSERT_TRUE(flood.send(1000));
    const size_t perFrame = 2;
    EXPECT_EQ(lines.texts().size(), kBurst);
    EXPECT_EQ(zet::PeerLog::getLeftOut() - before, perFrame * 1000 - kBurst);

    // Later one line is allowed again, and the number of omitted lines is logged before it.
    flood.m_Clock.advance(zet::PeerLog::kInterval);
    ASSERT_TRUE(flood.send(1));
    const std::wstring name = flood.m_Net.accepted()->getPeerName().getBuffer();
    EXPECT_EQ(lines.texts().size(), kBurst + 2);
    EXPECT_TRUE(lines.has(zet::Log::kWarning, L"last line " + std::to_wstring(perFrame * 1000 - kBurst) +
                                                  L" times, the same or alike (" + name + L")"));

    // The lines omitted last are reported at the end of the connection.
    flood.m_Net.accepted()->close();
    EXPECT_TRUE(lines.has(zet::Log::kWarning, L"last line 1 times, the same or alike (" + name + L")"));
}

TEST(Bugs, AnHonestPeersFaultsAreAllInTheLog)
{
    Flood flood;
    const test::LogLines lines;
    for (int i = 0; i < 40; ++i)
    {
        ASSERT_TRUE(flood.send(1));
        flood.m_Clock.advance(1000);
    }
    EXPECT_EQ(countOf(lines.texts(), L"Error:CmdPackager analyze error!"), 40u);
    EXPECT_EQ(countOf(lines.texts(), L"last line"), 0u);
}

TEST(Bugs, LinesThatWereLeftOutAreAmongTheFigures)
{
    Flood flood;
    ASSERT_TRUE(flood.send(100));
    const std::string text = convertToOpenMetrics(SystemCmdInfo()).getBuffer();
    EXPECT_NE(text.find("\ncommonground_log_lines_left_out_total " + std::to_string(zet::PeerLog::getLeftOut()) + "\n"),
              std::string::npos);
    EXPECT_GE(zet::PeerLog::getLeftOut(), 200 - kBurst);
}

} // namespace
