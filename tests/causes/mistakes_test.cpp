// What a program without any log sink prints on standard error after a mistake.
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/session/module.h"
#include "net/session/session.h"
#include "tests/support/accepting_port.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/passing_door.h"
#include "tests/support/raw_peer.h"
#include "tests/support/standard_error.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{

using test::ClientHandle;
using test::expectIn;
using test::NoteAnalyser;
using test::NoteCommand;
using test::StandardError;
using test::tickUntil;
using zet::TcpConnection;

std::string narrow(const zet::String_T<wchar_t>& text)
{
    return zet::StringHelper::wideToUtf8(text).getBuffer();
}

struct Mistakes : testing::Test
{
    zet::Unknown::Handle_T<zet::TcpStream> connecting(const wchar_t* ip, unsigned short port)
    {
        const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
        stream->start(&m_Net.m_System);
        stream->connect(ip, port, false);
        return stream;
    }
    bool fails(zet::TcpStream& stream)
    {
        return tickUntil(m_Net.m_System, [&] { return stream.getConnectionState() == TcpConnection::kConnectFailed; });
    }

    NoteAnalyser m_Analyser;
    test::Loopback m_Net{m_Analyser};
};

TEST_F(Mistakes, NothingListensAtThePort)
{
    const zet::Unknown::Handle_T<test::AcceptingPort> other = new test::AcceptingPort;
    ASSERT_TRUE(other->listen(0, 1));
    const unsigned short port = other->getPort();
    other->close();
    StandardError error;
    const auto stream = connecting(L"127.0.0.1", port);
    ASSERT_TRUE(fails(*stream));
    m_Net.m_System.tick();
    expectIn(error.text(), " [W] Connect to 127.0.0.1:" + std::to_string(port) + " failed: refused\n");
}

TEST_F(Mistakes, TheAddressIsEmptyOrThePortIsMissing)
{
    StandardError error;
    connecting(L"", 80);
    connecting(L"127.0.0.1", 0);
    const std::string text = error.text();
    expectIn(text, "Connect to :80 failed: not a valid address or port\n");
    expectIn(text, "Connect to 127.0.0.1:0 failed: not a valid address or port\n");
}

TEST_F(Mistakes, TheSocketIsConnectedAlready)
{
    const ClientHandle client = m_Net.connect(m_Analyser);
    ASSERT_TRUE(client);
    StandardError error;
    EXPECT_FALSE(client->connect(L"127.0.0.1", 80, false));
    expectIn(error.text(), "Connect to 127.0.0.1:80 failed: a connection or port is held already\n");
    EXPECT_FALSE(client->getEndCause());
}

TEST(MistakesOfNames, TheNameIsUnknown)
{
    const auto door = std::make_shared<test::PassingDoor>();
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
    stream->start(&system);
    StandardError error;
    ASSERT_TRUE(stream->connect(L"gmae.example", 8000, false));
    door->answer({});
    ASSERT_TRUE(tickUntil(system, [&] { return stream->getConnectionState() == TcpConnection::kConnectFailed; }));
    expectIn(error.text(), "Connect to gmae.example:8000 failed: the host name has no address\n");
    stream->close();
    system.exit();
}

TEST_F(Mistakes, ThePortIsInUse)
{
    StandardError error;
    const zet::Unknown::Handle_T<test::AcceptingPort> second = new test::AcceptingPort;
    EXPECT_FALSE(second->listen(m_Net.m_Server->getPort(), 1));
    expectIn(error.text(),
             " [E] Listen on [::]:" + std::to_string(m_Net.m_Server->getPort()) + " failed: the port is in use\n");
}

TEST_F(Mistakes, TheAddressToListenOnIsForeign)
{
    StandardError error;
    const zet::Unknown::Handle_T<test::AcceptingPort> port = new test::AcceptingPort;
    ASSERT_TRUE(port->setBindAddress(L"192.0.2.1"));
    EXPECT_FALSE(port->listen(0, 1));
    expectIn(error.text(), "Listen on 192.0.2.1:0 failed: not an address of this machine\n");
}

TEST_F(Mistakes, APacketIsAboveTheLimit)
{
    const ClientHandle client = m_Net.connect(m_Analyser);
    ASSERT_TRUE(client);
    m_Net.accepted()->SetPacketLimit(100);
    const std::string peer = narrow(m_Net.accepted()->getPeerName());
    StandardError error;
    ASSERT_TRUE(client->send(NoteCommand(1, 1000)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return client->isInvalid(); }));
    expectIn(error.text(), "Connection with " + peer + " ended: the peer announced a packet above the limit\n");
}

TEST_F(Mistakes, ThePeerDoesNotRead)
{
    const ClientHandle client = m_Net.connect(m_Analyser);
    ASSERT_TRUE(client);
    client->setOutputLimit(1);
    const std::string peer = narrow(client->getPeerName());
    StandardError error;
    ASSERT_TRUE(client->send(NoteCommand(1)));
    EXPECT_FALSE(client->send(NoteCommand(2)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return client->isInvalid(); }));
    const std::string text = error.text();
    expectIn(text, "Error while writing data to network:" + peer + "\n");
    expectIn(text, "Connection with " + peer + " ended: its output is at the limit\n");
}

TEST_F(Mistakes, TheAddressIsFiltered)
{
    ASSERT_TRUE(m_Net.m_Server->addRejectSubnet(L"127.0.0.0/8"));
    StandardError error;
    const auto stream = connecting(L"127.0.0.1", m_Net.m_Server->getPort());
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->getEndCount(zet::EndCause::kFiltered) == 1; }));
    EXPECT_EQ(m_Net.m_Server->getFault().m_Code, zet::EndCause::kFiltered);
    const std::string text = error.text();
    expectIn(text, " [W] Connection of 127.0.0.1:");
    expectIn(text, " refused: filtered\n");
}

TEST_F(Mistakes, TheFileOfFiltersIsMissing)
{
    StandardError error;
    m_Net.m_Server->AddRejectAddressFrom(L"no-such-file.txt");
    expectIn(error.text(), " [W] Open file 'no-such-file.txt' error");
}

TEST_F(Mistakes, NoHandlerIsInstalled)
{
    const ClientHandle client = m_Net.connect(m_Analyser);
    ASSERT_TRUE(client);
    StandardError error;
    // An id without a handler.
    class Unhandled : public CCmdHead
    {
    public:
        Unhandled() : CCmdHead(0x0124) {}
    };
    ASSERT_TRUE(client->send(Unhandled()));
    ASSERT_TRUE(client->send(NoteCommand(1)));
    bool isHandled = false;
    m_Analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&) { isHandled = true; };
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return isHandled; }));
    expectIn(error.text(), "CCmdAnalyserSocket cannot Analyse NULL command(0x0124)");
}

TEST(MistakesOfSessions, TheModuleIsInNoSystem)
{
    const auto module = zet::NetModule::createInstance();
    const auto session = zet::NetSession::createInstance(module);
    StandardError error;
    EXPECT_FALSE(session->connect(zet::NetAddress(L"127.0.0.1", 8000), zet::Uuid()));
    expectIn(error.text(), "Connect to 127.0.0.1:8000 failed: not in a System, or without a port\n");
    EXPECT_EQ(session->getEndCause().m_Code, zet::EndCause::kNotStarted);
}

TEST_F(Mistakes, ACommandOnAClosedSocketStaysSilentButTheCauseIsThere)
{
    const ClientHandle client = m_Net.connect(m_Analyser);
    ASSERT_TRUE(client);
    client->closeFor(3);
    StandardError error;
    EXPECT_FALSE(client->send(NoteCommand(1)));
    EXPECT_EQ(error.text(), "");
    EXPECT_EQ(client->getEndCause(), (zet::EndCause{zet::EndCause::kHost, 3}));
}

// A door with no handles left.
class ExhaustedDoor : public test::PassingDoor
{
public:
    Handle open(Kind kind, Family family, Fault& fault) override
    {
        if (!m_IsExhausted)
            return PassingDoor::open(kind, family, fault);
        fault = {Fault::kExhausted, 24};
        return kNoHandle;
    }

    bool m_IsExhausted = true;
};

TEST(MistakesOfHandles, NoHandleIsLeft)
{
    const auto door = std::make_shared<ExhaustedDoor>();
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, door));
    const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
    const zet::Unknown::Handle_T<test::AcceptingPort> port = new test::AcceptingPort;
    stream->start(&system);
    port->start(&system);
    StandardError error;
    EXPECT_FALSE(stream->connect(L"127.0.0.1", 8000, false));
    EXPECT_FALSE(port->listen(8000, 1));
    const std::string text = error.text();
    expectIn(text, "Connect to 127.0.0.1:8000 failed: no handle left\n");
    expectIn(text, "Listen on [::]:8000 failed: no handle left\n");
    EXPECT_EQ(port->getFault().m_Code, zet::EndCause::kNoHandle);
    system.exit();
}

TEST(MistakesOfTheLog, LinesAboutEndsAreBoundedPerThread)
{
    zet::TestClock clock(1700000000, 1000);
    const test::LogLines log;
    std::thread(
        [&clock]
        {
            const auto module = zet::NetModule::createInstance();
            const auto session = zet::NetSession::createInstance(module);
            const zet::NetAddress address(L"127.0.0.1", 8000);
            for (int i = 0; i < 40; ++i)
                session->connect(address, zet::Uuid());
            clock.advance(250);
            session->connect(address, zet::Uuid());
        })
        .join();
    const auto lines = log.texts();
    ASSERT_EQ(lines.size(), 33u);
    EXPECT_EQ(lines[0], L"Connect to 127.0.0.1:8000 failed: not in a System, or without a port");
    EXPECT_EQ(lines[32], lines[0] + L" (8 lines like this one were omitted before it)");
}

} // namespace
