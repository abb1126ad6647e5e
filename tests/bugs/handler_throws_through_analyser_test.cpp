// An exception from a handler left CCmdAnalyserSocket::Analyse. A socket caught it, but a host that unpacks tunnelled
// frames calls the analyser itself, and its own loop ended. CCmdAnalyser has always caught it.
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "dispatch/analyser_socket.h"
#include "framework/exception.h"
#include "framework/memory_stream.h"
#include "framework/stream.h"
#include "tests/support/log_lines.h"
#include "transport/command_socket.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

enum Thrown : unsigned long
{
    kStandard,
    kNumber,
    kStream
};

[[noreturn]] void throwBy(unsigned long which)
{
    if (which == kStandard)
        throw std::runtime_error("no table");
    if (which == kNumber)
        throw 5;
    throw zet::Exception(L"short", "file.cpp", 7);
}

void throwing(CCommandSocket*, CCmdHead*, unsigned long arg1, unsigned long)
{
    throwBy(arg1);
}

void throwingFallback(CCommandSocket*, CCmdPackager*, unsigned long arg1, unsigned long)
{
    throwBy(arg1);
}

// A frame of an empty CCmdServerEcho, or of an id without a handler.
void fill(CCmdPackager& packager, unsigned short id = command_id::CCmdServerEcho)
{
    ASSERT_TRUE(CCmdServerEcho().Write(&packager));
    packager.SetCmdID(id);
}

// Without a connection.
class BareSocket : public CCommandSocket
{
public:
    BareSocket() : CCommandSocket(nullptr) {}
};

class ThrowingHandler : public testing::TestWithParam<Thrown>
{
protected:
    ThrowingHandler() : m_Analyser(throwingFallback, GetParam(), 0, throwingFallback, GetParam(), 0)
    {
        m_Analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, throwing,
                           GetParam(), 0);
    }
    void expectReport()
    {
        const std::wstring peer = m_Socket.getPeerName().getBuffer();
        const std::wstring texts[] = {L"Exception in a command handler: no table (" + peer + L")",
                                      L"Exception in a command handler (" + peer + L")", L"short (file.cpp:7)"};
        const auto lines = m_Lines.texts();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_TRUE(m_Lines.has(zet::Log::kError, texts[GetParam()])) << std::string(lines[0].begin(), lines[0].end());
    }

    test::LogLines m_Lines;
    BareSocket m_Socket;
    CCmdAnalyserSocket m_Analyser;
};

TEST_P(ThrowingHandler, EndsAtTheAnalyserOfAPackager)
{
    CCmdPackager packager;
    fill(packager);
    EXPECT_NO_THROW(EXPECT_FALSE(m_Analyser.Analyse(&m_Socket, packager)));
    expectReport();
}

TEST_P(ThrowingHandler, EndsAtTheAnalyserOfAFrame)
{
    CCmdPackager packager;
    fill(packager);
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    EXPECT_NO_THROW(EXPECT_FALSE(m_Analyser.Analyse(&m_Socket, frame, size)));
    expectReport();
}

TEST_P(ThrowingHandler, EndsAtTheAnalyserOfAStream)
{
    CCmdPackager packager;
    fill(packager);
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    zet::MemoryInput input(frame, size);
    zet::InputStream stream(&input);
    EXPECT_NO_THROW(EXPECT_FALSE(m_Analyser.Analyse(&m_Socket, stream)));
    expectReport();
}

TEST_P(ThrowingHandler, EndsAtTheAnalyserAsAFallback)
{
    CCmdPackager packager;
    fill(packager, 0x4001);
    EXPECT_NO_THROW(EXPECT_FALSE(m_Analyser.Analyse(&m_Socket, packager)));
    expectReport();
}

INSTANTIATE_TEST_SUITE_P(Bugs, ThrowingHandler, testing::Values(kStandard, kNumber, kStream));

} // namespace
