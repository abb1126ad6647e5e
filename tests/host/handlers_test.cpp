#include "host/handlers.h"

#include "commands/race_pawn.h"
#include "commands/registry.h"
#include "commands/server_status.h"
#include "packaging/cmd_packager.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cwchar>
#include <memory>
#include <stdexcept>
#include <thread>

namespace
{

using zet::Log;

std::unique_ptr<CCmdPackager> packed(const CCmdHead& command)
{
    auto packager = std::make_unique<CCmdPackager>();
    EXPECT_TRUE(command.Write(packager.get()));
    return packager;
}

std::unique_ptr<CCmdPackager> packedEcho(unsigned long data)
{
    CCmdServerEcho echo;
    echo.m_Data = data;
    return packed(echo);
}

class HostHandlers : public testing::Test
{
protected:
    bool analyse(CCmdPackager& packager) { return m_Analyser->Analyse(m_Socket, packager); }
    std::vector<std::wstring> linesAbout(const wchar_t* word) const
    {
        std::vector<std::wstring> lines;
        for (const std::wstring& line : m_Lines.texts())
            if (line.find(word) != std::wstring::npos)
                lines.push_back(line);
        return lines;
    }

    test::LogLines m_Lines;
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    zet::Unknown::Handle_T<CCommandSocket> m_Socket = CCommandSocket::createInstance(m_Analyser.get());
};

TEST_F(HostHandlers, HandlerGetsSocketAndCommandWithTheirTypes)
{
    host::Handlers handlers(*m_Analyser);
    std::vector<unsigned long> seen;
    const CCommandSocket* from = nullptr;
    EXPECT_TRUE(handlers.on<CCmdServerEcho>(
        [&](CCommandSocket& socket, CCmdServerEcho& echo)
        {
            from = &socket;
            seen.push_back(echo.m_Data);
        }));
    EXPECT_TRUE(handlers.on<CCmdServerEchoReply>([](CCommandSocket&, CCmdServerEchoReply&) { FAIL(); }));
    EXPECT_EQ(handlers.getCount(), 2);
    EXPECT_TRUE(analyse(*packedEcho(3)));
    EXPECT_TRUE(analyse(*packedEcho(4)));
    EXPECT_EQ(seen, (std::vector<unsigned long>{3, 4}));
    EXPECT_EQ(from, m_Socket.get());
    EXPECT_TRUE(m_Lines.texts().empty());
}

TEST_F(HostHandlers, HandlerMayOwnWhatCannotBeCopied)
{
    host::Handlers handlers(*m_Analyser);
    int sum = 0;
    auto own = std::make_unique<int>(5);
    handlers.on<CCmdServerEcho>([&sum, own = std::move(own)](CCommandSocket&, const CCmdServerEcho&) mutable
                                { sum += (*own)++; });
    analyse(*packedEcho(1));
    analyse(*packedEcho(1));
    EXPECT_EQ(sum, 11);
}

TEST_F(HostHandlers, CommandWithBytesLeftOverIsRefusedInOneLineWithItsName)
{
    host::Handlers handlers(*m_Analyser);
    handlers.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); });
    const auto packager = packedEcho(1);
    const int size = packager->GetDataSize() + 2;
    packager->Write(short(0));
    EXPECT_FALSE(analyse(*packager));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdServerEcho (0x%04x) refused: 2 of %d bytes are left over ()",
                  command_id::CCmdServerEcho, size);
    EXPECT_EQ(linesAbout(L"CCmdServerEcho"), std::vector<std::wstring>{expected});
    EXPECT_EQ(m_Lines.texts().size(), 2U) << "the line and the analyser's own";
}

TEST_F(HostHandlers, TruncatedCommandIsRefusedInOneLineWithItsName)
{
    host::Handlers handlers(*m_Analyser);
    handlers.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); });
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdServerEcho);
    packager.Write(static_cast<unsigned short>(CCmdHead::kVersion));
    EXPECT_FALSE(analyse(packager));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdServerEcho (0x%04x) refused: it does not fit 2 bytes ()",
                  command_id::CCmdServerEcho);
    EXPECT_EQ(linesAbout(L"CCmdServerEcho"), std::vector<std::wstring>{expected});
}

TEST_F(HostHandlers, SecondHandlerForAClassIsRefused)
{
    host::Handlers handlers(*m_Analyser);
    int first = 0;
    EXPECT_TRUE(handlers.on<CCmdServerEcho>([&](CCommandSocket&, CCmdServerEcho&) { ++first; }));
    EXPECT_FALSE(handlers.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); }));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"Handlers: CCmdServerEcho has the id 0x%04x, which has the handler of CCmdServerEcho",
                  command_id::CCmdServerEcho);
    EXPECT_TRUE(m_Lines.has(Log::kError, expected));
    analyse(*packedEcho(1));
    EXPECT_EQ(first, 1);
}

TEST_F(HostHandlers, OtherClassOfASharedIdIsRefused)
{
    host::Handlers handlers(*m_Analyser);
    EXPECT_TRUE(handlers.on<CCmdGS_PawnScore>([](CCommandSocket&, CCmdGS_PawnScore&) {}));
    EXPECT_FALSE(handlers.on<CCmdServerBusy>([](CCommandSocket&, CCmdServerBusy&) {}));
    EXPECT_TRUE(m_Lines.has(Log::kError,
                            L"Handlers: CCmdServerBusy has the id 0x1204, which has the handler of CCmdGS_PawnScore"));
    EXPECT_EQ(handlers.getCount(), 1);
}

// A class whose id is not in the table of an analyser.
class FarCommand : public CCmdHead
{
public:
    FarCommand() : CCmdHead(kCommandIdLimit) {}
};

TEST_F(HostHandlers, IdAboveTheTableIsRefused)
{
    host::Handlers handlers(*m_Analyser);
    EXPECT_FALSE(handlers.on<FarCommand>([](CCommandSocket&, FarCommand&) {}));
    EXPECT_EQ(linesAbout(L"Handlers: ").size(), 1U);
    EXPECT_EQ(handlers.getCount(), 0);
}

TEST_F(HostHandlers, HandlersDestroyedBeforeTheAnalyserAreNotCalled)
{
    auto handlers = std::make_unique<host::Handlers>(*m_Analyser);
    handlers->on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); });
    handlers.reset();
    EXPECT_FALSE(analyse(*packedEcho(1)));
    wchar_t expected[128];
    std::swprintf(expected, 128, L"CCmdServerEcho (0x%04x) refused: its Handlers was destroyed ()",
                  command_id::CCmdServerEcho);
    EXPECT_TRUE(m_Lines.has(Log::kError, expected));
}

TEST_F(HostHandlers, NewHandlersAreNotCalledForTheEntriesOfDestroyedOnes)
{
    auto handlers = std::make_unique<host::Handlers>(*m_Analyser);
    handlers->on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); });
    handlers.reset();
    // The new handler reuses the freed row.
    const auto other = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers later(*other);
    later.on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) { FAIL(); });
    EXPECT_FALSE(analyse(*packedEcho(1)));
}

TEST_F(HostHandlers, AnalyserMayBeDestroyedFirst)
{
    auto analyser = std::make_unique<CCmdAnalyserSocket>();
    const auto copy = std::make_unique<CCmdAnalyserSocket>();
    int calls = 0;
    {
        host::Handlers handlers(*analyser);
        handlers.on<CCmdServerEcho>([&](CCommandSocket&, CCmdServerEcho&) { ++calls; });
        *copy = *analyser;
        analyser.reset();
        EXPECT_TRUE(copy->Analyse(m_Socket, *packedEcho(1)));
    }
    EXPECT_FALSE(copy->Analyse(m_Socket, *packedEcho(1)));
    EXPECT_EQ(calls, 1);
}

TEST_F(HostHandlers, ExceptionOfAHandlerEndsItsCommandOnly)
{
    host::Handlers handlers(*m_Analyser);
    handlers.on<CCmdServerEcho>(
        [](CCommandSocket&, CCmdServerEcho& echo)
        {
            if (echo.m_Data == 1)
                throw std::runtime_error("one");
        });
    EXPECT_FALSE(analyse(*packedEcho(1)));
    EXPECT_TRUE(m_Lines.has(Log::kError, L"Exception in a command handler: one ()"));
    EXPECT_TRUE(analyse(*packedEcho(2)));
}

TEST_F(HostHandlers, DispatchAllocatesNothing)
{
    host::Handlers handlers(*m_Analyser);
    unsigned long sum = 0;
    handlers.on<CCmdServerEcho>([&](CCommandSocket&, CCmdServerEcho& echo) { sum += echo.m_Data; });
    const auto packager = packedEcho(2);
    const test::AllocationCount count;
    for (int i = 0; i < 100; ++i)
    {
        packager->Reset();
        analyse(*packager);
    }
    EXPECT_EQ(count.blocks(), 0);
    EXPECT_EQ(sum, 200U);
}

TEST_F(HostHandlers, ThreadsShareAnAnalyserWhileOthersAreMade)
{
    host::Handlers handlers(*m_Analyser);
    std::atomic<int> calls{0};
    handlers.on<CCmdServerEcho>([&](CCommandSocket&, CCmdServerEcho&) { ++calls; });
    const auto dispatch = [&]
    {
        const auto socket = CCommandSocket::createInstance(m_Analyser.get());
        const auto packager = packedEcho(1);
        for (int i = 0; i < 500; ++i)
        {
            packager->Reset();
            m_Analyser->Analyse(socket, *packager);
        }
    };
    std::thread first(dispatch);
    std::thread second(dispatch);
    const auto other = std::make_unique<CCmdAnalyserSocket>();
    // Fill more than one block of the table.
    for (int i = 0; i < 3; ++i)
    {
        std::vector<std::unique_ptr<host::Handlers>> many;
        for (int j = 0; j < 300; ++j)
        {
            many.push_back(std::make_unique<host::Handlers>(*other));
            many.back()->on<CCmdServerEcho>([](CCommandSocket&, CCmdServerEcho&) {});
        }
    }
    first.join();
    second.join();
    EXPECT_EQ(calls, 1000);
}

} // namespace
