#include "dispatch/analyser_socket.h"

#include "commands/registry.h"
#include "packaging/cmd_packager.h"
#include "tests/support/argument.h"
#include "tests/support/log_lines.h"
#include "transport/command_socket.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace
{

using zet::Log;

// A socket without a connection that counts the analyser's calls.
class CountingSocket : public CCommandSocket
{
public:
    CountingSocket() : CCommandSocket(nullptr) {}
    void OnCmdRecv(int size) override { m_Sizes.push_back(size); }

    std::vector<int> m_Sizes;
};

struct Seen
{
    int m_Calls = 0;
    unsigned long m_Data = 0;
    unsigned long m_Arg2 = 0;
};

Seen& seenIn(unsigned long address)
{
    return test::objectOf<Seen>(address);
}

void onEcho(CCommandSocket*, CCmdHead* command, unsigned long arg1, unsigned long arg2)
{
    ++seenIn(arg1).m_Calls;
    seenIn(arg1).m_Data = static_cast<CCmdServerEcho*>(command)->m_Data;
    seenIn(arg1).m_Arg2 = arg2;
}

void onFallback(CCommandSocket*, CCmdPackager*, unsigned long arg1, unsigned long arg2)
{
    ++seenIn(arg1).m_Calls;
    seenIn(arg1).m_Arg2 = arg2;
}

class AnalyserSocket : public testing::Test
{
protected:
    unsigned long arg() { return test::argumentOf(&seen); }
    void installEcho(CCmdAnalyserSocket& analyser)
    {
        analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho, arg(), 7);
    }
    void writeEcho(unsigned long data)
    {
        CCmdServerEcho echo;
        echo.m_Data = data;
        ASSERT_TRUE(echo.Write(&pk));
    }

    Seen seen;
    CCmdPackager pk;
    zet::Unknown::Handle_T<CountingSocket> socket{new CountingSocket};
};

TEST_F(AnalyserSocket, HandsTheCommandAndTheInstalledArgumentsToTheHandler)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installEcho(*analyser);
    writeEcho(0x12345678);
    EXPECT_TRUE(analyser->Analyse(socket.get(), pk));
    EXPECT_EQ(seen.m_Data, 0x12345678ul);
    EXPECT_EQ(seen.m_Arg2, 7ul);
    EXPECT_EQ(socket->m_Sizes, std::vector<int>{pk.GetDataSize()});
}

TEST_F(AnalyserSocket, OverflowIdIsReportedAndNotCounted)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    pk.SetCmdID(0x4019);
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), pk));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket cannot Analyse OverFlow CMD(0x4019) \t()"));
    EXPECT_TRUE(socket->m_Sizes.empty());
}

TEST_F(AnalyserSocket, UnknownIdIsReportedAndCounted)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    pk.SetCmdID(0x4012);
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), pk));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket cannot Analyse NULL command(0x4012) \t()"));
    EXPECT_EQ(socket->m_Sizes.size(), 1u);
}

TEST_F(AnalyserSocket, UnknownFallbackGetsItsTwoArgumentsAndMakesTheResultTrue)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>(onFallback, arg(), 5, nullptr, 0, 0);
    pk.SetCmdID(0x4012);
    EXPECT_TRUE(analyser->Analyse(socket.get(), pk));
    EXPECT_EQ(seen.m_Calls, 1);
    EXPECT_EQ(seen.m_Arg2, 5ul);
    EXPECT_EQ(socket->m_Sizes.size(), 1u);
}

TEST_F(AnalyserSocket, FailedParseIsReportedTwiceAndReturnsFalse)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installEcho(*analyser);
    writeEcho(1);
    ASSERT_TRUE(pk.Write(true));
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), pk));
    EXPECT_TRUE(log.has(Log::kMessage, L"指令(0x120d)解析出错 ()"));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket cannot Analyse ERROR command(0x120d) \t()"));
    EXPECT_EQ(seen.m_Calls, 0);
}

TEST_F(AnalyserSocket, ErrorFallbackMakesAFailedParseTrue)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>(nullptr, 0, 0, onFallback, arg(), 9);
    installEcho(*analyser);
    pk.SetCmdID(command_id::CCmdServerEcho);
    EXPECT_TRUE(analyser->Analyse(socket.get(), pk));
    EXPECT_EQ(seen.m_Calls, 1);
    EXPECT_EQ(seen.m_Arg2, 9ul);
}

TEST_F(AnalyserSocket, FrameThatCannotBeReceivedIsReported)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    zet::InputStream empty;
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), empty));
    EXPECT_TRUE(log.has(Log::kError, L"Error:CmdPackager analyze error! ()"));
}

TEST_F(AnalyserSocket, AFrameAboveTheLargestPayloadIsRefusedByItsHeader)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installEcho(*analyser);
    // Only these bytes are there.
    const auto header = std::make_unique<std::array<unsigned char, 6>>();
    *header = {0x34, 0x12, 0, 0, 0, 0x40};
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), header->data(), 0x7FFFFFFF));
    EXPECT_EQ(log.texts(), (std::vector<std::wstring>{L"Command Package extends max length limit(268435455)",
                                                      L"Error:CmdPackager analyze error! ()"}));
    EXPECT_EQ(seen.m_Calls, 0);
}

TEST_F(AnalyserSocket, AFrameInMemoryIsHandledAsOneInAStream)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    installEcho(*analyser);
    writeEcho(0x12345678);
    zet::Buffer buffer;
    ASSERT_TRUE(CCmdPackager_packageToBuffer(pk, buffer));
    const unsigned char* const frame = buffer.getBuffer();
    const int size = buffer.getBufferSize();
    EXPECT_TRUE(analyser->Analyse(socket.get(), frame, size));
    EXPECT_EQ(seen.m_Data, 0x12345678ul);
    EXPECT_EQ(socket->m_Sizes, std::vector<int>{pk.GetDataSize()});
    const test::LogLines log;
    EXPECT_FALSE(analyser->Analyse(socket.get(), frame, size - 1));
    EXPECT_TRUE(log.has(Log::kError, L"Error:CmdPackager analyze error! ()"));
    EXPECT_FALSE(analyser->Analyse(nullptr, frame, size));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket error Socket NULL"));
    EXPECT_EQ(seen.m_Calls, 1);
}

TEST_F(AnalyserSocket, CopySharesItsProcessorsAndOutlivesItsSource)
{
    auto source = std::make_unique<CCmdAnalyserSocket>();
    installEcho(*source);
    const auto copy = std::make_unique<CCmdAnalyserSocket>(*source);
    source.reset();
    writeEcho(3);
    EXPECT_TRUE(copy->Analyse(socket.get(), pk));
    EXPECT_EQ(seen.m_Data, 3ul);
}

} // namespace
