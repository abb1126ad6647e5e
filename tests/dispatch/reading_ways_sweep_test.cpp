// There is a fast and a slow way to read what a peer sends. Whole packets are taken from the input buffer, the others
// by the packet reader; a frame is shown in place, copied, or read step by step. Every command, valid, cut and with
// hostile counts, is handled, refused and logged the same by all ways.
#include "dispatch/analyser_socket.h"
#include "framework/memory_stream.h"
#include "framework/time.h"
#include "tests/support/argument.h"
#include "tests/support/log_lines.h"
#include "tests/support/payload_maker.h"
#include "tests/support/raw_peer.h"
#include "tests/support/through.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace
{

using tools::ClassInfo;
using Bytes = std::vector<unsigned char>;

// The handled commands, in order.
std::vector<std::string> g_Handled;

void onCommand(CCommandSocket*, CCmdHead* command, unsigned long arg, unsigned long)
{
    const ClassInfo& info = *test::objectOf<const ClassInfo*>(arg);
    g_Handled.push_back(std::string(info.m_Name) + ' ' + tools::objectJson(info.m_Wire(), command).dump());
}

std::vector<const ClassInfo*> commands()
{
    std::vector<const ClassInfo*> all;
    for (const ClassInfo& info : tools::classTable())
        if (info.m_Family == tools::Family::kCommand)
            all.push_back(&info);
    return all;
}

// Of two classes that share an id the second one is installed.
void installAll(CCmdAnalyserSocket& analyser, std::vector<const ClassInfo*>& infos)
{
    for (const ClassInfo*& info : infos)
        analyser.Install(info->m_Id, info->m_ProcessSocket, onCommand, test::argumentOf(&info), 0);
}

void append(Bytes& bytes, unsigned value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
}

Bytes frameOf(unsigned short id, const std::string& payload, unsigned word)
{
    Bytes frame;
    append(frame, id, 2);
    append(frame, word, 4);
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

// The frames of a valid payload, of cut ones, and of ones with hostile counts and sizes.
std::vector<Bytes> framesOf(const ClassInfo& info, unsigned seed)
{
    const test::MadePayload made = test::PayloadMaker(seed).make(info.m_Wire());
    const auto word = static_cast<unsigned>(made.m_Bytes.size()) << 2;
    const std::string& whole = made.m_Bytes;
    std::vector<Bytes> frames{frameOf(info.m_Id, whole, word),
                              // A byte too many, and the flags of addresses for which bytes may be missing.
                              frameOf(info.m_Id, whole + '\0', word + 4), frameOf(info.m_Id, whole, word | 3),
                              // A frame that ends before its payload, and one that ends after it.
                              frameOf(info.m_Id, whole, word + 4), frameOf(info.m_Id, whole + "after", word),
                              frameOf(info.m_Id, whole, 0xFFFFFFFC), Bytes{static_cast<unsigned char>(info.m_Id)}};
    for (const size_t size : {whole.size() / 2, whole.size() - 1})
        frames.push_back(frameOf(info.m_Id, whole.substr(0, size), static_cast<unsigned>(size) << 2));
    for (const test::CountPlace& place : made.m_Counts)
    {
        for (const unsigned hostile : {0x7FFFFFFFu, 0x80000000u, 1025u})
        {
            std::string payload = whole;
            for (size_t i = 0; i < 4; ++i)
                payload[place.m_Offset + i] = static_cast<char>(hostile >> 8 * (3 - i));
            frames.push_back(frameOf(info.m_Id, payload, word));
        }
    }
    return frames;
}

struct Outcome
{
    bool m_Result = false;
    bool m_IsClosed = false;
    std::vector<std::string> m_Handled;
    std::vector<std::wstring> m_Lines;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome)
{
    return stream << outcome.m_Result << outcome.m_IsClosed << ", " << outcome.m_Handled.size() << " handled, "
                  << outcome.m_Lines.size() << " lines";
}

template <class Read>
Outcome outcomeOf(Read read)
{
    Outcome outcome;
    const test::LogLines log;
    outcome.m_Result = read();
    outcome.m_Handled = std::exchange(g_Handled, {});
    outcome.m_Lines = log.texts();
    return outcome;
}

TEST(ReadingWaysSweep, AFrameShownCopiedOrReadInStepsIsTheSame)
{
    auto infos = commands();
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installAll(*analyser, infos);
    const auto socket = CCommandSocket::createInstance(analyser.get());
    unsigned seed = 11;
    size_t handled = 0;
    size_t refused = 0;
    for (const ClassInfo* info : infos)
    {
        SCOPED_TRACE(info->m_Name);
        for (const Bytes& frame : framesOf(*info, ++seed))
        {
            const int size = static_cast<int>(frame.size());
            const Outcome shown = outcomeOf([&] { return analyser->Analyse(socket, frame.data(), size); });
            EXPECT_EQ(shown, outcomeOf(
                                 [&]
                                 {
                                     zet::MemoryInput input(frame.data(), size);
                                     zet::InputStream stream(&input);
                                     return analyser->Analyse(socket, stream);
                                 }));
            EXPECT_EQ(shown, outcomeOf(
                                 [&]
                                 {
                                     zet::MemoryInput input(frame.data(), size);
                                     test::Unshown source(input);
                                     zet::InputStream stream(&source);
                                     return analyser->Analyse(socket, stream);
                                 }));
            handled += shown.m_Handled.size();
            refused += shown.m_Handled.empty();
        }
    }
    EXPECT_GT(handled, infos.size());
    EXPECT_GT(refused, infos.size());
}

// The numbers of a peer's port differ between two connections.
std::wstring withoutDigits(const std::wstring& line)
{
    std::wstring kept;
    std::copy_if(line.begin(), line.end(), std::back_inserter(kept),
                 [](wchar_t unit) { return unit < L'0' || unit > L'9'; });
    return kept;
}

// What a server makes of the bytes, sent in pieces.
Outcome receivedBy(CCmdAnalyserSocket& analyser, const Bytes& bytes, size_t piece, bool isFast)
{
    // The share of the log depends on the time.
    zet::TestClock clock(1700000000, 1000);
    test::Loopback net(&analyser);
    if (!isFast)
        net.m_Server->m_Make = [&] { return test::ClientHandle(new test::SlowClient(&analyser)); };
    test::RawPeer peer(net);
    EXPECT_TRUE(peer.m_IsUp);
    Outcome outcome = outcomeOf(
        [&]
        {
            for (size_t at = 0; at < bytes.size(); at += piece)
            {
                const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
                peer.send(Bytes(begin, begin + static_cast<std::ptrdiff_t>(std::min(piece, bytes.size() - at))));
                for (int i = 0; i < 3; ++i)
                    net.m_System.tick();
                clock.advance(1000);
            }
            // A turn of a connection has a limit of bytes.
            for (size_t i = 0; i < 100 + bytes.size() / 1024; ++i)
                net.m_System.tick();
            return true;
        });
    outcome.m_IsClosed = net.m_Server->GetClientCount() == 0;
    for (std::wstring& line : outcome.m_Lines)
        line = withoutDigits(line);
    return outcome;
}

TEST(ReadingWaysSweep, PacketsFromTheInputBufferAndThroughTheReaderAreTheSame)
{
    auto infos = commands();
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installAll(*analyser, infos);
    Bytes bytes;
    unsigned seed = 23;
    int count = 0;
    for (const ClassInfo* info : infos)
        for (const Bytes& frame : framesOf(*info, ++seed))
        {
            // Some empty packets too.
            if (++count % 7 == 0)
                append(bytes, 0, 4);
            append(bytes, static_cast<unsigned>(frame.size()), 4);
            bytes.insert(bytes.end(), frame.begin(), frame.end());
        }
    for (const size_t piece : {size_t(911), size_t(4096), bytes.size()})
    {
        const Outcome fast = receivedBy(*analyser, bytes, piece, true);
        EXPECT_GE(fast.m_Handled.size(), infos.size()) << "in pieces of " << piece;
        EXPECT_FALSE(fast.m_IsClosed);
        const Outcome slow = receivedBy(*analyser, bytes, piece, false);
        EXPECT_EQ(fast.m_Handled, slow.m_Handled) << "in pieces of " << piece;
        EXPECT_EQ(fast.m_IsClosed, slow.m_IsClosed) << "in pieces of " << piece;
        EXPECT_EQ(fast.m_Lines, slow.m_Lines) << "in pieces of " << piece;
    }
}

// A length that no packet may have ends the connection wherever it is cut; what came before it is handled.
TEST(ReadingWaysSweep, HostileLengthsEndTheConnectionByBothWays)
{
    auto infos = commands();
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installAll(*analyser, infos);
    for (const unsigned length : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x10000026u})
    {
        Bytes bytes;
        for (const Bytes& frame : framesOf(*infos.front(), 5))
        {
            append(bytes, static_cast<unsigned>(frame.size()), 4);
            bytes.insert(bytes.end(), frame.begin(), frame.end());
        }
        append(bytes, length, 4);
        bytes.insert(bytes.end(), 30, 0x41);
        for (const size_t piece : {size_t(1), size_t(2), size_t(3), size_t(5), bytes.size()})
        {
            const Outcome fast = receivedBy(*analyser, bytes, piece, true);
            EXPECT_TRUE(fast.m_IsClosed) << length << " in pieces of " << piece;
            EXPECT_FALSE(fast.m_Handled.empty());
            EXPECT_EQ(fast, receivedBy(*analyser, bytes, piece, false)) << length << " in pieces of " << piece;
        }
    }
}

} // namespace
