// wirelens send by UDP, to a server of the test.
#include "commands/registry.h"
#include "framework/system.h"
#include "tests/support/wirelens.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

namespace
{

// Answers echoes.
class Peer final : public UdpClientSocket
{
public:
    Peer() { m_CmdAnalyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, onEcho); }

    void onTick(unsigned int tick) override
    {
        s_Ticking = this;
        UdpClientSocket::onTick(tick);
    }

private:
    static void onEcho(CCmdHead* command, unsigned long, unsigned long)
    {
        CCmdServerEchoReply reply;
        reply.m_Data = static_cast<CCmdServerEcho*>(command)->m_Data;
        s_Ticking->send(reply);
    }

    static inline Peer* s_Ticking = nullptr;
};

class Server final : public UdpServerSocket
{
public:
    void onAccept() override { accept(zet::Unknown::Handle_T<Peer>(new Peer)); }
};

TEST(WirelensUdp, SendReachesAServerAndPrintsItsAnswer)
{
    zet::System system;
    const zet::Unknown::Handle_T<Server> server(new Server);
    ASSERT_TRUE(server->start(&system) && server->listen(L"127.0.0.1", 0));
    const auto client = test::startWirelens({"send", "127.0.0.1:" + std::to_string(server->GetPort()), "--udp",
                                             "--expect", "CCmdServerEchoReply", "--timeout", "60"});
    client->write("{\"class\":\"CCmdServerEcho\",\"fields\":{\"m_Data\":42}}\n");
    client->closeInput();
    while (client->output(), !client->isOver())
    {
        system.tick();
        system.wait();
    }
    EXPECT_EQ(client->wait(), 0) << client->output();
    EXPECT_NE(client->output().find("\"m_Data\":42"), std::string::npos) << client->output();
    server->close();
}

} // namespace
