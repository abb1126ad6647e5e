#include "dispatch/analyser.h"
#include "dispatch/analyser_socket.h"

#include "commands/registry.h"
#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "tests/support/argument.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace
{

using zet::Log;

// The calls of a test's handlers and fallbacks.
struct Seen
{
    int m_Handled = 0;
    int m_Unknown = 0;
    int m_Errors = 0;
    unsigned long m_Data = 0;
    unsigned long m_Arg1 = 0;
    unsigned long m_Arg2 = 0;
};

Seen& seenIn(unsigned long address)
{
    return test::objectOf<Seen>(address);
}

void onEcho(CCmdHead* command, unsigned long arg1, unsigned long arg2)
{
    Seen& seen = seenIn(arg1);
    ++seen.m_Handled;
    seen.m_Data = static_cast<CCmdServerEcho*>(command)->m_Data;
    seen.m_Arg2 = arg2;
}

void onUnknown(CCmdPackager*, unsigned long arg1, unsigned long arg2)
{
    ++seenIn(arg1).m_Unknown;
    seenIn(arg1).m_Arg2 = arg2;
}

void onError(CCmdPackager*, unsigned long arg1, unsigned long)
{
    ++seenIn(arg1).m_Errors;
}

void writeEcho(CCmdPackager& pk, unsigned long data)
{
    CCmdServerEcho echo;
    echo.m_Data = data;
    ASSERT_TRUE(echo.Write(&pk));
}

class Analyser : public testing::Test
{
protected:
    unsigned long arg() { return test::argumentOf(&seen); }
    void installEcho(CCmdAnalyser& analyser)
    {
        analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, onEcho);
    }

    Seen seen;
    CCmdPackager pk;
};

TEST_F(Analyser, HandsTheCommandAndTheCallsArgumentsToTheHandler)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    installEcho(*analyser);
    writeEcho(pk, 0xFFFFFFFFul);
    EXPECT_EQ(analyser->Analyse(pk, arg(), 42), 0);
    EXPECT_EQ(seen.m_Handled, 1);
    EXPECT_EQ(seen.m_Data, 0xFFFFFFFFul);
    EXPECT_EQ(seen.m_Arg2, 42ul);
}

TEST_F(Analyser, PayloadWithAByteTooManyIsRefusedWithItsTexts)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    installEcho(*analyser);
    writeEcho(pk, 1);
    ASSERT_TRUE(pk.Write(true));
    const test::LogLines log;
    EXPECT_EQ(analyser->Analyse(pk, arg(), 0), 0);
    EXPECT_EQ(seen.m_Handled, 0);
    EXPECT_TRUE(log.has(Log::kMessage, L"指令(0x120d)解析出错"));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyser cannot Analyse ERROR command(0x120d))"));
}

TEST_F(Analyser, PayloadWithAByteTooFewIsRefused)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    installEcho(*analyser);
    CCmdPackager whole;
    writeEcho(whole, 1);
    pk.SetCmdID(command_id::CCmdServerEcho);
    ASSERT_TRUE(pk.Write(whole.GetBuffer(), whole.GetDataSize() - 1));
    const test::LogLines log;
    EXPECT_EQ(analyser->Analyse(pk, arg(), 0), 0);
    EXPECT_EQ(seen.m_Handled, 0);
    EXPECT_EQ(log.texts().size(), 2u);
}

TEST_F(Analyser, UnknownAndOverflowIdsAreReported)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    const test::LogLines log;
    pk.SetCmdID(0x4018);
    EXPECT_EQ(analyser->Analyse(pk, 0, 0), 0);
    pk.SetCmdID(0x4019);
    EXPECT_EQ(analyser->Analyse(pk, 0, 0), 0);
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyser cannot Analyse NULL command(0x4018)"));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyser cannot Analyse OverFlow CMD(0x4019)"));
}

TEST_F(Analyser, FallbacksAreCalledInPlaceOfTheLog)
{
    const auto analyser = std::make_unique<CCmdAnalyser>(onUnknown, onError);
    installEcho(*analyser);
    const test::LogLines log;
    pk.SetCmdID(0x4018);
    analyser->Analyse(pk, arg(), 5);
    EXPECT_EQ(seen.m_Unknown, 1);
    EXPECT_EQ(seen.m_Arg2, 5ul);
    EXPECT_TRUE(log.texts().empty());
    pk.SetCmdID(command_id::CCmdServerEcho);
    analyser->Analyse(pk, arg(), 0);
    EXPECT_EQ(seen.m_Errors, 1);
    EXPECT_EQ(log.texts().size(), 1u);
}

TEST_F(Analyser, LaterInstallReplacesTheEntry)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(command_id::CCmdServerEcho, CCmdServerInfoRequest::CCmdServerInfoRequest_Process, onEcho);
    installEcho(*analyser);
    writeEcho(pk, 3);
    analyser->Analyse(pk, arg(), 0);
    EXPECT_EQ(seen.m_Data, 3ul);
}

TEST_F(Analyser, DatagramIsUnpackedFirst)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    installEcho(*analyser);
    writeEcho(pk, 77);
    std::vector<unsigned char> frame(static_cast<size_t>(pk.Pack(nullptr, 0)));
    pk.Pack(frame.data(), static_cast<int>(frame.size()));
    EXPECT_EQ(analyser->Analyse(frame.data(), static_cast<int>(frame.size()), arg(), 0), 0);
    EXPECT_EQ(seen.m_Data, 77ul);

    const test::LogLines log;
    EXPECT_EQ(analyser->Analyse(nullptr, 5, arg(), 0), 0);
    EXPECT_EQ(analyser->Analyse(frame.data(), 1, arg(), 0), 0);
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyser cannot Analyse NULL data"));
    EXPECT_TRUE(log.has(Log::kError, L"cmdPackager Unpack data error"));
}

void throwing(CCmdHead*, unsigned long, unsigned long)
{
    throw std::runtime_error("no such player");
}

TEST_F(Analyser, WhatAHandlerThrowsEndsWithItsCommand)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, throwing);
    writeEcho(pk, 8);
    const test::LogLines log;
    EXPECT_EQ(analyser->Analyse(pk, 0, 0), 0);
    EXPECT_TRUE(log.has(Log::kError, L"Exception in a command handler: no such player"));
}

// Without a constant constructor this does not compile: each program would clear 256 KiB when it starts.
TEST_F(Analyser, StaticOneIsConstantAndEmpty)
{
    static constinit CCmdAnalyser analyser;
    writeEcho(pk, 8);
    {
        const test::LogLines log;
        analyser.Analyse(pk, arg(), 0);
        EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyser cannot Analyse NULL command(0x120d)"));
    }
    installEcho(analyser);
    CCmdPackager second;
    writeEcho(second, 8);
    analyser.Analyse(second, arg(), 0);
    EXPECT_EQ(seen.m_Handled, 1);
}

TEST_F(Analyser, HighestIdIsDispatched)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(
        kCommandIdLimit - 1,
        [](CCmdPackager*, CmdHandler, unsigned long arg1, unsigned long)
        {
            ++seenIn(arg1).m_Handled;
            return true;
        },
        onEcho);
    pk.SetCmdID(kCommandIdLimit - 1);
    analyser->Analyse(pk, arg(), 0);
    EXPECT_EQ(seen.m_Handled, 1);
}

TEST_F(Analyser, CopyIsIndependent)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    installEcho(*analyser);
    const auto copy = std::make_unique<CCmdAnalyser>();
    *copy = *analyser;
    writeEcho(pk, 8);
    copy->Analyse(pk, arg(), 0);
    EXPECT_EQ(seen.m_Handled, 1);
}

TEST_F(Analyser, SocketAnalyserRefusesANullSocketBeforeAnythingElse)
{
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    const test::LogLines log;
    pk.SetCmdID(0x4019);
    EXPECT_FALSE(analyser->Analyse(nullptr, pk));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket cannot Analyse CMD(0x4019), Socket NULL"));
    zet::InputStream stream;
    EXPECT_FALSE(analyser->Analyse(nullptr, stream));
    EXPECT_TRUE(log.has(Log::kError, L"CCmdAnalyserSocket error Socket NULL"));
}

} // namespace
