// Peers of net sessions that violate the protocol, and two Systems on two threads.
#include "framework/inner/fast_paths.h"
#include "framework/time.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"
#include "tests/support/raw_handle.h"

#include <gtest/gtest.h>

#include <cstring>
#include <future>
#include <thread>

namespace
{

using test::NetNotes;
using test::NetPair;
using test::NoteCommand;
using test::NotingHandle;
using test::tickUntil;
using zet::NetSession;
using Bytes = std::vector<unsigned char>;

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes packet(const Bytes& content)
{
    const size_t size = content.size();
    return Bytes{static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8),
                 static_cast<unsigned char>(size >> 16), static_cast<unsigned char>(size >> 24)} +
           content;
}

// "zns", the version, and an id of sixteen times 0x11.
const Bytes kGreeting = packet(Bytes{'z', 'n', 's', 1} + Bytes(16, 0x11));

Bytes named(const std::string& name, const Bytes& content)
{
    return packet(Bytes{static_cast<unsigned char>(name.size())} + Bytes(name.begin(), name.end()) + content);
}

// A note with the number 7: the command's frame in a message, all by hand.
//   message   00 no addresses, 12 for 18 bytes of data
//   frame     23 01 the id, 30 00 00 00 for 12 bytes of payload without addresses
//   payload   00 02 the version, 00 00 the client index, 00 00 00 07 the number, 00 00 00 00 for no ballast
const Bytes kNote = named("Msg_NetCommand", {0x00, 0x12, 0x23, 0x01, 0x30, 0x00, 0x00, 0x00, 0x00, 0x02,
                                             0x00, 0x00, 0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00, 0x00});

// Sends arbitrary bytes to the listening module.
struct RawPeer
{
    explicit RawPeer(NetPair& net) : m_Net(net), m_Stream(new zet::TcpStream)
    {
        m_Stream->start(&net.m_System);
        m_Stream->connect(L"127.0.0.1", net.m_Server->getPort(), false);
        tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); });
    }
    ~RawPeer()
    {
        m_Stream->close();
        m_Stream->stop();
    }
    void send(const Bytes& bytes)
    {
        EXPECT_EQ(m_Stream->send(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
    }
    // Waits until the other side has these notes and returns its notes; after a timeout, whatever they are.
    std::string notes(const std::string& awaited)
    {
        tickUntil(m_Net.m_System, [&] { return m_Net.accepted()->m_Notes == awaited; });
        return m_Net.accepted()->m_Notes;
    }

    NetPair& m_Net;
    zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
};

struct NoteCounter
{
    NoteCounter()
    {
        NetNotes::s_Handler = [this](unsigned long, unsigned long, const NoteCommand& note)
        {
            ++m_Calls;
            m_Number = note.m_Number;
        };
    }
    int m_Calls = 0;
    int m_Number = 0;
};

TEST(NetSessionPeer, ASessionMadeByHandIsASession)
{
    NetPair net;
    RawPeer peer(net);
    const NoteCounter counter;
    peer.send(kGreeting + kNote);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return counter.m_Calls == 1; }));
    EXPECT_EQ(counter.m_Number, 7);
    EXPECT_EQ(net.accepted()->m_Notes, "o");
    // The reply is the greeting itself.
    Bytes answer(kGreeting.size());
    ASSERT_TRUE(tickUntil(net.m_System,
                          [&] {
                              return peer.m_Stream->peek(answer.data(), static_cast<int>(answer.size())) ==
                                     static_cast<int>(answer.size());
                          }));
    EXPECT_EQ(answer, kGreeting);
}

TEST(NetSessionPeer, BytesThatComeOneByOneAreTheSame)
{
    NetPair net;
    RawPeer peer(net);
    const NoteCounter counter;
    for (const unsigned char byte : kGreeting + kNote)
    {
        peer.send({byte});
        net.m_System.tick();
        net.m_System.tick();
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return counter.m_Calls == 1; }));
}

TEST(NetSessionPeer, AnyOtherGreetingFails)
{
    const Bytes id(16, 0x11);
    const Bytes misfits[] = {
        packet(Bytes{'z', 'n', 's', 2} + id),
        packet(Bytes{'Z', 'n', 's', 1} + id),
        packet(Bytes{'z', 'n', 's', 1} + Bytes(15, 0x11)),
        packet(Bytes{'z', 'n', 's', 1} + Bytes(17, 0x11)),
        packet({'z'}),
        kNote,
        // 256 MiB announced.
        {0x00, 0x00, 0x00, 0x10, 'z', 'n', 's', 1},
        {0xFF, 0xFF, 0xFF, 0xFF},
    };
    // The greeting does not time out meanwhile.
    const zet::TestClock clock(0);
    for (const Bytes& misfit : misfits)
    {
        NetPair net;
        RawPeer peer(net);
        peer.send(misfit);
        EXPECT_EQ(peer.notes("fx"), "fx");
        EXPECT_EQ(net.accepted()->getState(), NetSession::kDown);
    }
}

TEST(NetSessionPeer, OneThatLeavesBeforeItsGreetingFails)
{
    NetPair net;
    RawPeer peer(net);
    peer.send({20, 0, 0, 0, 'z'});
    net.m_System.tick();
    peer.m_Stream->close();
    EXPECT_EQ(peer.notes("fx"), "fx");
}

TEST(NetSessionPeer, AServerThatGreetsUnderAnotherIdFails)
{
    // Answers every greeting with its own.
    class Answering : public zet::TcpServer
    {
    public:
        void onAccept() override
        {
            m_Stream = new zet::TcpStream;
            if (accept(m_Stream))
                m_Stream->send(kGreeting.data(), static_cast<int>(kGreeting.size()));
        }
        zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
    };
    NetPair net;
    const zet::Unknown::Handle_T<Answering> server = new Answering;
    server->start(&net.m_System);
    ASSERT_TRUE(server->listen(0, 5));
    const NotingHandle session = net.make();
    const zet::NetAddress address(L"127.0.0.1", server->getPort());
    ASSERT_TRUE(session->connect(address, zet::Uuid()));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return session->getState() == NetSession::kDown; }));
    EXPECT_EQ(session->m_Notes, "fx");
    // With its own id it is accepted.
    zet::Uuid id;
    std::memset(static_cast<void*>(&id), 0x11, sizeof id);
    ASSERT_TRUE(session->connect(address, id));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return session->m_Notes == "fxo"; }));
    session->close();
    server->close();
}

TEST(NetSessionPeer, AnInvalidMessageIsDroppedAndTheSessionGoesOn)
{
    const Bytes misfits[] = {
        packet({0x00}),
        packet({0xFF}),
        packet(Bytes(40, 0xFF)),
        packet({0x0E, 'M', 's', 'g'}),
        named("NoSuchClass", {0x00, 0x00}),
        // Registered, but not a message class.
        named("zet::Evt_NetConnectOk", {}),
        // Truncated, and with an extra byte.
        named("Msg_NetCommand", {}),
        named("Msg_NetCommand", {0x00}),
        named("Msg_NetCommand", {0x01, 0x00}),
        named("Msg_NetCommand", {0x00, 0x06, 0x34, 0x12}),
        named("Msg_NetCommand", Bytes(kNote.begin() + 4 + 15, kNote.end()) + Bytes({0x00})),
        // Counts of 2^31 and of 2^31 - 1 targets, and as much data.
        named("Msg_NetCommand", {0x02, 0x80, 0x80, 0x80, 0x80, 0x08}),
        named("Msg_NetCommand", {0x02, 0xFF, 0xFF, 0xFF, 0xFF, 0x07}),
        named("Msg_NetCommand", {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x07}),
    };
    NetPair net;
    RawPeer peer(net);
    NoteCounter counter;
    peer.send(kGreeting);
    const test::LogLines lines;
    for (const Bytes& misfit : misfits)
    {
        peer.send(misfit + kNote);
        const int awaited = counter.m_Calls + 1;
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return counter.m_Calls == awaited; }));
    }
    EXPECT_GE(lines.texts().size(), std::size(misfits));
    EXPECT_EQ(net.accepted()->m_Notes, "o");
}

TEST(NetSessionPeer, AFrameThatDoesNotConvertIsDropped)
{
    NetPair net;
    RawPeer peer(net);
    const NoteCounter counter;
    // A complete message with a truncated frame.
    peer.send(kGreeting + named("Msg_NetCommand", {0x00, 0x03, 0x23, 0x01, 0x30}) + kNote);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return counter.m_Calls == 1; }));
    EXPECT_EQ(net.accepted()->m_Notes, "o");
}

TEST(NetSessionPeer, AMessageWithoutSubscriberIsPassedOver)
{
    NetPair net;
    RawPeer peer(net);
    const NoteCounter counter;
    const test::LogLines lines;
    peer.send(kGreeting + named("NetMessage", {0x00}) + kNote);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return counter.m_Calls == 1; }));
    EXPECT_TRUE(lines.texts().empty());
}

TEST(NetSessionPeer, ALengthAboveTheLimitEndsTheSessionWithAnError)
{
    NetPair net;
    RawPeer peer(net);
    peer.send(kGreeting);
    ASSERT_EQ(peer.notes("o"), "o");
    peer.send({0xFF, 0xFF, 0xFF, 0x7F});
    EXPECT_EQ(peer.notes("oex"), "oex");
    EXPECT_EQ(net.accepted()->getState(), NetSession::kDown);
}

TEST(NetSessionPeer, AHugeLengthWithinTheLimitCostsWhatItsBytesCost)
{
    NetPair net;
    // Not even from an unknown peer.
    zet::NetLimits limits;
    limits.m_FirstInput = 0;
    net.m_Server->setLimits(limits);
    RawPeer peer(net);
    peer.send(kGreeting);
    ASSERT_EQ(peer.notes("o"), "o");
    const test::AllocationCount count;
    peer.send({0xFF, 0xFF, 0xFF, 0x0F, 1, 2, 3});
    for (int i = 0; i < 50; ++i)
        net.m_System.tick();
    // Two blocks of input; the pool has the first one, which without fast paths it does not keep.
    EXPECT_LT(count.bytes(), zet::inner::kHasFastPaths ? 100000 : 150000);
    EXPECT_EQ(net.accepted()->m_Notes, "o");
}

TEST(NetSessionPeer, AResetEndsTheSessionWithAnAbort)
{
    if (test::looksResetLikeEnd())
        GTEST_SKIP() << "Wine reports a reset as an orderly end";
    NetPair net;
    RawPeer peer(net);
    peer.send(kGreeting);
    ASSERT_EQ(peer.notes("o"), "o");
    ASSERT_TRUE(test::resetRaw(peer.m_Stream->detach()));
    EXPECT_EQ(peer.notes("oax"), "oax");
}

TEST(NetSessionPeer, AFloodOfMessagesIsHandledInOrder)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    int next = 0;
    NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand& note)
    {
        EXPECT_EQ(note.m_Number, next);
        ++next;
    };
    for (int i = 0; i < 5000; ++i)
    {
        NoteCommand note(i, i % 700);
        ASSERT_TRUE(session->sendNetCommand(&note));
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return next == 5000; }));
}

TEST(NetSessionPeer, TwoSystemsOnTwoThreadsTalkAThousandTimes)
{
    constexpr int kRounds = 1000;
    std::promise<unsigned short> port;
    // The server's thread ends the client's System, which therefore outlives both threads.
    zet::System serverSystem;
    zet::System clientSystem;
    int last = 0;
    NetNotes notes;
    // Called on both threads; the other one waits for the reply.
    NetNotes::s_Handler = [&](unsigned long arg1, unsigned long, const NoteCommand& note)
    {
        CNetSession* const session = CNetSession::ofArgument(arg1);
        ASSERT_NE(session, nullptr);
        if (note.m_Number == kRounds)
        {
            last = note.m_Number;
            clientSystem.shutdown();
            return;
        }
        NoteCommand answer(note.m_Number + 1, note.m_Number % 3000);
        EXPECT_TRUE(session->sendNetCommand(&answer));
    };
    std::thread serverThread(
        [&]
        {
            serverSystem.init();
            const zet::Unknown::Handle_T<test::NotingModule> module = new test::NotingModule(&notes.m_Analyser);
            ASSERT_TRUE(module->start(&serverSystem));
            ASSERT_TRUE(module->listen(0, 5));
            port.set_value(module->getPort());
            serverSystem.run();
            module->close();
        });
    const unsigned short where = port.get_future().get();
    std::thread clientThread(
        [&]
        {
            clientSystem.init();
            const auto module = zet::NetModule::createInstance();
            ASSERT_TRUE(module->start(&clientSystem));
            const NotingHandle session = new test::NotingSession(module, &notes.m_Analyser);
            session->m_OnOk = [&]
            {
                NoteCommand first(0);
                EXPECT_TRUE(session->sendNetCommand(&first));
            };
            ASSERT_TRUE(session->connect(zet::NetAddress(L"127.0.0.1", where), zet::Uuid()));
            clientSystem.run();
            session->close();
        });
    clientThread.join();
    serverSystem.shutdown();
    serverThread.join();
    NetNotes::s_Handler = nullptr;
    EXPECT_EQ(last, kRounds);
}

TEST(NetSessionPeer, ASendFromAnotherThreadIsRefusedAndLogged)
{
    NetPair net;
    const NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    const test::LogLines lines;
    std::thread other(
        [&]
        {
            NoteCommand note(1);
            EXPECT_FALSE(session->sendNetCommand(&note));
        });
    other.join();
    EXPECT_TRUE(lines.has(zet::Log::kError, L"Message Send Error:Msg_NetCommand, Invoke on Wrong Thread"));
    NoteCommand note(1);
    EXPECT_TRUE(session->sendNetCommand(&note));
}

} // namespace
