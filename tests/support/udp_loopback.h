// Servers and sockets that talk over UDP on the loopback, with the test clock.
#pragma once

#include "framework/time.h"
#include "net/door/door.h"
#include "tests/support/loopback.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

namespace test
{

// A socket that passes each NoteCommand to a function.
class NoteSocket : public UdpClientSocket
{
public:
    NoteSocket() { m_CmdAnalyser.Install(NoteCommand::kId, &NoteSocket::process, &NoteSocket::call); }

    void onClose() override
    {
        ++m_Closes;
        m_StateAtClose = getConnectionState();
        UdpClientSocket::onClose();
    }

    using UdpClientSocket::m_CmdAnalyser;
    using UdpClientSocket::m_iBodyCapacity;
    using UdpClientSocket::m_iBodyRead;
    using UdpClientSocket::m_iHead;
    using UdpClientSocket::m_iHeadRead;

    std::function<void(NoteSocket&, const NoteCommand&)> m_Handler;
    std::vector<int> m_Numbers;
    unsigned long m_LastArg2 = 1;
    int m_Closes = 0;
    ConnectionState m_StateAtClose = kDown;

private:
    static bool process(CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2)
    {
        NoteCommand command;
        return ProcessCommandBy(command, nullptr, pk, [&] { handler(&command, arg1, arg2); });
    }
    static void call(CCmdHead* command, unsigned long arg1, unsigned long arg2)
    {
        auto& self = *static_cast<NoteSocket*>(reinterpret_cast<UdpClientSocket*>(static_cast<size_t>(arg1)));
        const auto& note = *static_cast<NoteCommand*>(command);
        self.m_LastArg2 = arg2;
        self.m_Numbers.push_back(note.m_Number);
        if (self.m_Handler)
            self.m_Handler(self, note);
    }
};
using NoteSocketHandle = zet::Unknown::Handle_T<NoteSocket>;

// A port of this machine.
sockaddr_in loopback(unsigned short port);

struct UserData
{
    unsigned int m_Address;
    unsigned short m_Port;
    std::vector<unsigned char> m_Bytes;
};

class NoteUdpServer : public UdpServerSocket
{
public:
    void onAccept() override
    {
        m_VisitorIds.push_back(getVisitorId());
        NoteSocketHandle socket;
        if (m_Spare.empty())
        {
            socket = new NoteSocket;
        }
        else
        {
            socket = m_Spare.back();
            m_Spare.pop_back();
        }
        socket->m_Handler = m_Handler;
        if (m_IsAccepting && accept(socket))
            m_Accepted.push_back(socket);
    }
    void onUserData(const sockaddr_in& address, const void* data, int size) override;

    bool m_IsAccepting = true;
    std::function<void(NoteSocket&, const NoteCommand&)> m_Handler;
    std::vector<zet::Uuid> m_VisitorIds;
    // Also held here, so that a test can inspect a connection that the server has released.
    std::vector<NoteSocketHandle> m_Accepted;
    // Used before new ones are created.
    std::vector<NoteSocketHandle> m_Spare;
    std::vector<UserData> m_UserData;
};

// One System with two ports: one that accepts and one that connects. Without a door it has the real one.
struct UdpNet
{
    explicit UdpNet(const zet::UdpServer::Settings& settings = {},
                    const std::shared_ptr<zet::inner::Door>& door = nullptr)
        : m_Clock(1700000000, 1000), m_Server(new NoteUdpServer), m_Port(new NoteUdpServer)
    {
        m_System.init();
        if (door)
            zet::inner::setDoor(m_System, door);
        m_Server->setSettings(settings);
        m_Port->setSettings(settings);
        m_Server->start(&m_System);
        m_Port->start(&m_System);
        m_IsListening = m_Server->listen(L"127.0.0.1", 0) && m_Port->listen(L"127.0.0.1", 0);
    }
    ~UdpNet()
    {
        m_Port->close();
        m_Server->close();
        m_System.exit();
    }

    // Ticks, one millisecond each, until the condition holds. False after the given number of ticks.
    template <class Condition>
    bool until(Condition condition, int milliseconds = 20000)
    {
        for (int i = 0; i < milliseconds; ++i)
        {
            if (condition())
                return true;
            step();
        }
        return condition();
    }
    void step(unsigned int milliseconds = 1)
    {
        if (m_Between)
            m_Between();
        m_System.tick();
        m_Clock.advance(milliseconds);
    }
    NoteSocketHandle begin(const zet::Uuid& id = {})
    {
        const NoteSocketHandle socket = new NoteSocket;
        m_Sockets.push_back(socket);
        const unsigned short port = m_Road ? m_Road : m_Server->getPort();
        return socket->connect(m_Port, L"127.0.0.1", port, id) ? socket : NoteSocketHandle();
    }
    // A socket that is established on both ends, or null.
    NoteSocketHandle connect(const zet::Uuid& id = {})
    {
        const size_t before = m_Server->m_Accepted.size();
        const NoteSocketHandle socket = begin(id);
        if (!socket || !until([&] { return isUp(*socket) && m_Server->m_Accepted.size() > before; }))
            return nullptr;
        return socket;
    }
    static bool isUp(const NoteSocket& socket) { return socket.getConnectionState() == NoteSocket::kEstablished; }
    NoteSocket& accepted() { return *m_Server->m_Accepted.back(); }

    zet::TestClock m_Clock;
    zet::System m_System;
    zet::Unknown::Handle_T<NoteUdpServer> m_Server;
    zet::Unknown::Handle_T<NoteUdpServer> m_Port;
    std::vector<NoteSocketHandle> m_Sockets;
    // Called before each tick, and the port to connect to instead of the server's; for a relay between the two.
    std::function<void()> m_Between;
    unsigned short m_Road = 0;
    bool m_IsListening = false;
};

} // namespace test
