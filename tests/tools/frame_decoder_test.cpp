#include "tools/frame_decoder.h"

#include "packaging/cmd_packager.h"
#include "tests/support/allocations.h"
#include "tools/object_json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

using tools::FrameDecoder;
using tools::Framing;
using tools::Recording;
using Json = nlohmann::ordered_json;

std::string bytesOf(std::string_view hex)
{
    std::string bytes;
    EXPECT_TRUE(tools::bytesOfHex(hex, bytes)) << hex;
    return bytes;
}

// Each result with the number of bytes added before it.
template <class Taker>
struct Told
{
    explicit Told(Framing framing)
        : m_Taker(framing,
                  [this](std::string_view line, bool isError)
                  {
                      m_Lines.push_back({m_In, Json::parse(line)});
                      EXPECT_EQ(isError, m_Lines.back().second.contains("error")) << line;
                  })
    {
    }

    void add(std::string_view bytes, size_t pieceSize)
    {
        for (size_t at = 0; at < bytes.size(); at += pieceSize)
        {
            const std::string_view piece = bytes.substr(at, pieceSize);
            m_In += piece.size();
            m_Taker.add(piece);
        }
    }

    size_t m_In = 0;
    std::vector<std::pair<size_t, Json>> m_Lines;
    Taker m_Taker;
};

TEST(FrameDecoder, ReportsAStreamFrameWithItsLastByte)
{
    const std::string frame = bytesOf("0010 14000000 0002000709");
    Told<FrameDecoder> told(Framing::kStream);
    told.add(frame + frame, 1);
    ASSERT_EQ(told.m_Lines.size(), 2u);
    EXPECT_EQ(told.m_Lines[0].first, frame.size());
    EXPECT_EQ(told.m_Lines[1].first, 2 * frame.size());
    EXPECT_EQ(told.m_Lines[1].second["offset"], frame.size());
    EXPECT_EQ(told.m_Taker.held(), 0u);
    told.m_Taker.finish();
    EXPECT_EQ(told.m_Lines.size(), 2u);
}

TEST(FrameDecoder, ReportsAPacketsFrameBeforeTheRestOfThePacket)
{
    Told<FrameDecoder> told(Framing::kPackets);
    told.add(bytesOf("0d000000 0010 14000000 0002000709 aabb 00000000"), 1);
    told.m_Taker.finish();
    ASSERT_EQ(told.m_Lines.size(), 3u);
    EXPECT_EQ(told.m_Lines[0].first, 15u);
    EXPECT_EQ(told.m_Lines[1].second["error"], "2 bytes after the frame");
    // An empty packet has no frame.
    EXPECT_EQ(told.m_Lines[2].second, Json({{"offset", 21}, {"error", "no whole frame head"}}));
}

TEST(FrameDecoder, ReportsWhatIsCutAtTheEnd)
{
    const auto lastOf = [](Framing framing, std::string_view hex)
    {
        Told<FrameDecoder> told(framing);
        told.add(bytesOf(hex), 3);
        told.m_Taker.finish();
        return told.m_Lines.empty() ? Json() : told.m_Lines.back().second;
    };
    EXPECT_EQ(lastOf(Framing::kStream, "0010 1400"), Json({{"offset", 0}, {"error", "no whole frame head"}}));
    EXPECT_EQ(lastOf(Framing::kStream, "0010 14000000 0002"),
              Json({{"offset", 0}, {"error", "frame of 11 bytes, had 8"}}));
    EXPECT_EQ(lastOf(Framing::kPackets, "0b0000"), Json({{"offset", 0}, {"error", "no whole packet length"}}));
    EXPECT_EQ(lastOf(Framing::kPackets, "0b000000 0010"),
              Json({{"offset", 4}, {"error", "packet of 11 bytes, had 2"}}));
    // Skipped, and truncated there.
    EXPECT_EQ(lastOf(Framing::kPackets, "0b000000 0010 ffffffff 00"),
              Json({{"offset", 4}, {"error", "packet of 11 bytes, had 7"}}));
    EXPECT_EQ(lastOf(Framing::kDatagram, "0010 14 0002"), Json({{"offset", 0}, {"error", "no whole datagram frame"}}));
    EXPECT_EQ(lastOf(Framing::kStream, ""), Json());
}

TEST(FrameDecoder, AFrameBeyondAllFramesEndsAStream)
{
    Told<FrameDecoder> told(Framing::kStream);
    told.add(bytesOf("0010 ffffffff"), 6);
    told.add(std::string(100000, '\0'), 1000);
    told.m_Taker.finish();
    ASSERT_EQ(told.m_Lines.size(), 1u);
    EXPECT_EQ(told.m_Lines[0].second["error"], "frame of 1073741861 bytes, more than a frame can have");
    EXPECT_EQ(told.m_Taker.held(), 0u);
}

// A recording of any length takes the memory of its largest frame plus one piece of input.
TEST(FrameDecoder, HoldsNoMoreThanAFrameAndAPiece)
{
    constexpr size_t kPiece = 10000;
    constexpr int kTimes = 2000;
    CCmdPackager echo;
    echo.SetCmdID(0x4018);
    const std::string payload(3000, 'x');
    ASSERT_TRUE(echo.Write(payload.data(), static_cast<int>(payload.size())));
    std::string frame = bytesOf("1840") + std::string(4, '\0') + payload;
    for (size_t i = 0; i < 4; ++i)
        frame[2 + i] = static_cast<char>(payload.size() << 2 >> 8 * i);
    const std::string packet = bytesOf("be0b0000") + frame;
    // Valid packets, and one in a hundred that announces a frame larger than itself and is skipped.
    std::string bad = bytesOf("00001000 1840 ffffff3f");
    bad.resize(4 + 0x100000, '\1');

    for (const Framing framing : {Framing::kStream, Framing::kPackets})
    {
        size_t mostHeld = 0;
        long long mostInUse = 0;
        size_t frames = 0;
        const long long before = test::bytesInUse().value_or(0);
        FrameDecoder decoder(framing,
                             [&](std::string_view, bool)
                             {
                                 ++frames;
                                 mostInUse = std::max(mostInUse, test::bytesInUse().value_or(0) - before);
                             });
        const auto feed = [&](const std::string& bytes)
        {
            for (size_t at = 0; at < bytes.size(); at += kPiece)
            {
                decoder.add(std::string_view(bytes).substr(at, kPiece));
                mostHeld = std::max(mostHeld, decoder.held());
            }
        };
        size_t fed = 0;
        for (int i = 0; i < kTimes; ++i)
        {
            const std::string& next = framing == Framing::kPackets ? (i % 100 == 99 ? bad : packet) : frame;
            feed(next);
            fed += next.size();
        }
        decoder.finish();
        EXPECT_EQ(frames, static_cast<size_t>(kTimes));
        EXPECT_GT(fed, 6000000u);
        EXPECT_LE(mostHeld, packet.size());
        EXPECT_LE(mostInUse, 300000) << "of " << fed;
    }
    if (!test::bytesInUse())
        GTEST_SKIP() << test::kNobodyTellsBytes;
}

TEST(Recording, TextComesInPiecesOfAnySize)
{
    constexpr std::string_view kText = "0010 14000000 0002000709\n0010 14000000 0002000708\n";
    for (size_t pieceSize = 1; pieceSize < kText.size(); ++pieceSize)
    {
        Told<Recording> told(Framing::kStream);
        told.add(kText, pieceSize);
        told.m_Taker.finish();
        ASSERT_EQ(told.m_Lines.size(), 2u) << pieceSize;
        EXPECT_EQ(told.m_Lines[0].second["fields"]["m_ServerType"], 9);
        EXPECT_EQ(told.m_Lines[1].second["fields"]["m_ServerType"], 8);
    }
}

TEST(Recording, ALineOfTextIsReportedBeforeTheNext)
{
    Told<Recording> told(Framing::kStream);
    told.add("0010 14000000 0002000709", 1);
    EXPECT_EQ(told.m_Lines.size(), 1u);
}

TEST(Recording, RawBytesNeedNotBeMany)
{
    Told<Recording> told(Framing::kDatagram);
    told.add(bytesOf("0010 14 0002000709"), 1);
    ASSERT_EQ(told.m_Lines.size(), 1u);
    EXPECT_EQ(told.m_Lines[0].second["class"], "CCmdHostnameRequest");
}

TEST(Recording, TextThatBreaksOffIsAnError)
{
    Told<Recording> other(Framing::kStream);
    other.add("0010 14000000 0002000709 and so on", 5);
    other.m_Taker.finish();
    ASSERT_EQ(other.m_Lines.size(), 2u);
    EXPECT_EQ(other.m_Lines[1].second["error"], "character 27 is no hexadecimal digit");

    Told<Recording> half(Framing::kStream);
    half.add("0010 14000000 0002000709 0", 5);
    half.m_Taker.finish();
    ASSERT_EQ(half.m_Lines.size(), 2u);
    EXPECT_EQ(half.m_Lines[1].second["error"], "half a byte at the end");
}

// Of a connection over UDP: each frame after its length.
TEST(FrameDecoder, AStreamOverUdpIsReadFrameByFrame)
{
    const std::string frame = bytesOf("0800 0010 14 00 0200 0709");
    const std::string stream = frame + bytesOf("0300 001014") + bytesOf("0900 0010 14 00 0200 0709 55") + frame;
    for (const size_t pieceSize : {size_t{1}, size_t{3}, stream.size()})
    {
        Told<FrameDecoder> told(Framing::kUdpStream);
        told.add(stream, pieceSize);
        told.m_Taker.finish();
        ASSERT_EQ(told.m_Lines.size(), 5u);
        EXPECT_EQ(told.m_Lines[0].second["class"], "CCmdHostnameRequest");
        EXPECT_EQ(told.m_Lines[0].second["offset"], 2);
        EXPECT_EQ(told.m_Lines[1].second["error"], "no whole datagram frame");
        EXPECT_EQ(told.m_Lines[1].second["offset"], 12);
        EXPECT_EQ(told.m_Lines[2].second["fields"]["m_ServerType"], 9);
        EXPECT_EQ(told.m_Lines[3].second["error"], "1 bytes after the frame");
        EXPECT_EQ(told.m_Lines[4].second["offset"], 28);
    }
    for (const auto& [bytes, error] :
         {std::pair{"0000", "length 0 of a frame"}, std::pair{"feff0010", "length -2 of a frame"},
          std::pair{"0900 0010", "frame of 9 bytes, had 2"}, std::pair{"09", "no whole length of a frame"}})
    {
        Told<FrameDecoder> told(Framing::kUdpStream);
        told.add(bytesOf(bytes), 1);
        told.m_Taker.finish();
        ASSERT_EQ(told.m_Lines.size(), 1u) << bytes;
        EXPECT_EQ(told.m_Lines[0].second["error"], error);
    }
}

} // namespace
