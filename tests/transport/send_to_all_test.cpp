#include "framework/inner/fast_paths.h"
#include "transport/send_to_all.h"

#include "framework/thread.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

// Counts its encodings.
class CountedNote : public NoteCommand
{
public:
    using NoteCommand::NoteCommand;
    bool Write(CCmdPackager* pk) const override
    {
        ++m_Encodings;
        return NoteCommand::Write(pk);
    }
    mutable int m_Encodings = 0;
};

// Notes the calls of its hook, and refuses bytes on demand.
class NotingClient : public test::Client
{
public:
    explicit NotingClient(CCmdAnalyserSocket* analyser) : Client(analyser) { m_Sizes.reserve(10); }
    int write(const void* data, int size) override
    {
        ++m_Writes;
        return m_Refuses ? 0 : Client::write(data, size);
    }
    void OnCmdSend(int size) override
    {
        m_Sizes.push_back(size);
        if (m_OnSend)
            m_OnSend();
    }

    bool m_Refuses = false;
    int m_Writes = 0;
    std::vector<int> m_Sizes;
    std::function<void()> m_OnSend;
};
using NotingHandle = zet::Unknown::Handle_T<NotingClient>;

struct SendToMany : testing::Test
{
    SendToMany()
        : m_Receiver([this](CCommandSocket*, const NoteCommand& note) { m_Got.push_back(note.m_Number); }),
          m_Net(m_Sender)
    {
        m_Net.m_Server->m_Make = [this] { return ClientHandle(new NotingClient(m_Sender)); };
    }

    // The server's ends of that many connections.
    std::vector<NotingHandle> connect(int count)
    {
        std::vector<NotingHandle> sockets;
        for (int i = 0; i < count; ++i)
        {
            EXPECT_TRUE(m_Net.connect(m_Receiver));
            sockets.push_back(m_Net.accepted().castTo<NotingClient>());
        }
        return sockets;
    }
    bool arrive(size_t count)
    {
        return tickUntil(m_Net.m_System, [&] { return m_Got.size() >= count; });
    }

    std::vector<int> m_Got;
    NoteAnalyser m_Sender;
    NoteAnalyser m_Receiver;
    Loopback m_Net;
};

TEST_F(SendToMany, OneEncodingReachesEachSocket)
{
    const auto sockets = connect(3);
    const CountedNote note(5, 20);
    EXPECT_EQ(SendToAll(sockets, note), 3);
    EXPECT_EQ(note.m_Encodings, 1);
    ASSERT_TRUE(arrive(3));
    EXPECT_EQ(m_Got, (std::vector<int>{5, 5, 5}));
    for (const auto& socket : sockets)
    {
        EXPECT_EQ(socket->m_Sizes, (std::vector<int>{32}));
        EXPECT_EQ(socket->m_Writes, 1);
    }
}

TEST_F(SendToMany, ItTakesPointersHandlesAViewAndTheDictionaryOfAServer)
{
    const auto sockets = connect(3);
    std::vector<CCommandSocket*> pointers(sockets.begin(), sockets.end());
    EXPECT_EQ(SendToAll(pointers, NoteCommand(1)), 3);
    EXPECT_EQ(SendToAll(std::vector<ClientHandle>(sockets.begin(), sockets.end()), NoteCommand(2)), 3);
    EXPECT_EQ(SendToAll(std::span(pointers).subspan(1), NoteCommand(3)), 2);
    EXPECT_EQ(SendToAll(*m_Net.m_Server->GetAllClientSocket(), NoteCommand(4)), 3);
    EXPECT_EQ(SendToAll(std::vector<CCommandSocket*>(), NoteCommand(5)), 0);
    ASSERT_TRUE(arrive(11));
    std::ranges::sort(m_Got);
    EXPECT_EQ(m_Got, (std::vector<int>{1, 1, 1, 2, 2, 2, 3, 3, 4, 4, 4}));
}

TEST_F(SendToMany, ALargePackagerIsUnchangedAndTheNextSendFollowsIt)
{
    const auto sockets = connect(2);
    m_Receiver.m_Handler = [&](CCommandSocket*, const NoteCommand& note) { m_Got.push_back(note.m_Ballast); };
    CCmdPackager packager;
    ASSERT_TRUE(NoteCommand(7, 200000).Write(&packager));
    const int size = packager.GetDataSize();
    EXPECT_EQ(SendToAll(sockets, packager), 2);
    EXPECT_EQ(packager.GetDataSize(), size);
    EXPECT_EQ(packager.GetReadPointer(), 0);
    EXPECT_EQ(SendToAll(sockets, NoteCommand(8, 1)), 2);
    ASSERT_TRUE(arrive(4));
    EXPECT_EQ(std::ranges::count(m_Got, 200000), 2);
    EXPECT_EQ(std::ranges::count(m_Got, 1), 2);
    EXPECT_EQ(m_Got.back(), 1);
}

TEST_F(SendToMany, AddressesArrive)
{
    zet::Uuid from, target, gotFrom, gotTarget;
    zet::uuid_create(from);
    zet::uuid_create(target);
    const auto sockets = connect(1);
    m_Receiver.m_Handler = [&](CCommandSocket*, const NoteCommand& note)
    {
        note.GetAddress(gotFrom, gotTarget);
        m_Got.push_back(note.m_Number);
    };
    NoteCommand note(7);
    note.SetAddress(from, target);
    EXPECT_EQ(SendToAll(sockets, note), 1);
    ASSERT_TRUE(arrive(1));
    EXPECT_EQ(gotFrom, from);
    EXPECT_EQ(gotTarget, target);
}

TEST_F(SendToMany, EachSocketRefusesAsInItsOwnSend)
{
    auto sockets = connect(6);
    enum
    {
        kGood,
        kClosed,
        kFull,
        kOfAnotherThread,
        kBroken,
        kLast
    };
    sockets[kClosed]->close();
    sockets[kFull]->setOutputLimit(0);
    sockets[kOfAnotherThread]->bindRunThreadId(zet::Thread::getCurrentThreadId() + 1000000);
    sockets[kBroken]->m_bNetError = true;
    sockets.emplace_back();
    const std::wstring full =
        std::wstring(L"Error while writing data to network:") + sockets[kFull]->getPeerName().getBuffer();
    test::LogLines lines;
    const CountedNote note(9);
    EXPECT_EQ(SendToAll(sockets, note), 2);
    EXPECT_EQ(note.m_Encodings, 1);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{full, L"Command Send Error:0x123, Invoke on Wrong Thread"}));
    // The hook is called before the frame is queued, and not by a socket that may not send.
    for (const int called : {kGood, kFull, kLast})
        EXPECT_EQ(sockets[static_cast<size_t>(called)]->m_Sizes.size(), 1U);
    for (const int refused : {kClosed, kOfAnotherThread, kBroken})
        EXPECT_TRUE(sockets[static_cast<size_t>(refused)]->m_Sizes.empty());
    EXPECT_TRUE(sockets[kFull]->m_bNetError);
    EXPECT_FALSE(sockets[kOfAnotherThread]->m_bNetError);
    ASSERT_TRUE(arrive(2));
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->GetClientCount() == 4; }));
    EXPECT_EQ(m_Got, (std::vector<int>{9, 9}));
}

TEST_F(SendToMany, AnOverriddenWriteIsUsed)
{
    const auto sockets = connect(2);
    sockets[0]->m_Refuses = true;
    EXPECT_EQ(SendToAll(sockets, NoteCommand(1)), 1);
    EXPECT_TRUE(sockets[0]->m_bNetError);
    EXPECT_FALSE(sockets[1]->m_bNetError);
}

TEST_F(SendToMany, ACommandThatDoesNotWriteItselfIsReportedOnceAndGoesToNone)
{
    struct BadCommand : CCmdHead
    {
        BadCommand() : CCmdHead(0x0200) {}
        bool Write(CCmdPackager*) const override { return false; }
    };
    const auto sockets = connect(2);
    test::LogLines lines;
    EXPECT_EQ(SendToAll(sockets, BadCommand()), 0);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Command Package Error:512"}));
    EXPECT_TRUE(sockets[0]->m_Sizes.empty());
}

TEST_F(SendToMany, AHookMayAbandonItsOwnConnection)
{
    const auto sockets = connect(3);
    sockets[1]->m_OnSend = [&] { m_Net.m_Server->Abandon(sockets[1]); };
    EXPECT_EQ(SendToAll(*m_Net.m_Server->GetAllClientSocket(), NoteCommand(1)), 3);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 2);
    ASSERT_TRUE(arrive(2));
}

TEST_F(SendToMany, AConnectionThatIsConnectingKeepsTheCommand)
{
    const ClientHandle client = new test::Client(m_Sender);
    client->start(&m_Net.m_System);
    m_Net.m_Clients.push_back(client);
    m_Net.m_Server->m_pAnalyser = m_Receiver;
    m_Net.m_Server->m_Make = nullptr;
    ASSERT_TRUE(client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    EXPECT_EQ(SendToAll(std::vector<ClientHandle>{client}, NoteCommand(3)), 1);
    ASSERT_TRUE(arrive(1));
}

TEST_F(SendToMany, OneAllocationIsForAllSockets)
{
    const auto sockets = connect(30);
    EXPECT_EQ(SendToAll(sockets, NoteCommand(1)), 30);
    ASSERT_TRUE(arrive(30));
    const test::AllocationCount count;
    EXPECT_EQ(SendToAll(sockets, NoteCommand(2)), 30);
    // Without fast paths each socket copies the packet, and no block is kept.
    EXPECT_LE(count.blocks(), zet::inner::kHasFastPaths ? 1 : 30);
}

#ifdef COUNTS_SYSTEM_CALLS
TEST_F(SendToMany, TheOutputLeavesAtTheEndOfTheTickByOneCallEach)
{
    const auto sockets = connect(4);
    const test::SystemCalls before;
    EXPECT_EQ(SendToAll(sockets, NoteCommand(1)), 4);
    EXPECT_EQ(SendToAll(sockets, NoteCommand(2)), 4);
    const test::SystemCalls queued;
    EXPECT_EQ(queued.m_Sends, before.m_Sends);
    m_Net.m_System.tick();
    const test::SystemCalls after;
    EXPECT_EQ(after.m_Sends, before.m_Sends + 4);
    ASSERT_TRUE(arrive(8));
}
#endif

} // namespace
