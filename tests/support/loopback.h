// A command for tests, and a server and clients that talk over the loopback.
#pragma once

#include "dispatch/analyser_socket.h"
#include "framework/system.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "transport/framework_server_socket.h"

#include <functional>
#include <vector>

namespace test
{

// A number and a given number of bytes.
class NoteCommand : public CCmdHead
{
public:
    static constexpr unsigned short kId = 0x0123;

    explicit NoteCommand(int number = 0, int ballast = 0) : CCmdHead(kId), m_Number(number), m_Ballast(ballast) {}

    bool Write(CCmdPackager* pk) const override
    {
        const std::vector<unsigned char> bytes(static_cast<size_t>(m_Ballast), static_cast<unsigned char>(m_Number));
        return CCmdHead::Write(pk) && pk->Write(m_Number) && pk->Write(m_Ballast) &&
               (m_Ballast == 0 || pk->Write(bytes.data(), m_Ballast));
    }
    bool Read(CCmdPackager* pk) override
    {
        if (!CCmdHead::Read(pk) || !pk->Read(&m_Number) || !pk->Read(&m_Ballast))
            return false;
        std::vector<unsigned char> bytes(static_cast<size_t>(pk->GetDataSize() - pk->GetReadPointer()));
        return static_cast<int>(bytes.size()) == m_Ballast && (m_Ballast == 0 || pk->Read(bytes.data(), m_Ballast));
    }
    static bool Process(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler, unsigned long arg1,
                        unsigned long arg2)
    {
        NoteCommand command;
        return ProcessCommandBy(command, socket, pk, [&] { handler(socket, &command, arg1, arg2); });
    }

    int m_Number;
    int m_Ballast;
};

// The handler of NoteCommand; one per analyser.
using NoteHandler = std::function<void(CCommandSocket*, const NoteCommand&)>;

class NoteAnalyser
{
public:
    explicit NoteAnalyser(NoteHandler handler = [](CCommandSocket*, const NoteCommand&) {})
        : m_Handler(std::move(handler))
    {
        // The analyser takes two 32-bit arguments; a pointer has up to 64 bits.
        const auto self = reinterpret_cast<unsigned long long>(this);
        m_Analyser.Install(NoteCommand::kId, NoteCommand::Process, &NoteAnalyser::call,
                           static_cast<unsigned long>(self & 0xFFFFFFFF), static_cast<unsigned long>(self >> 32));
    }
    NoteAnalyser(const NoteAnalyser&) = delete;
    NoteAnalyser& operator=(const NoteAnalyser&) = delete;

    CCmdAnalyserSocket* get() { return &m_Analyser; }
    operator CCmdAnalyserSocket*() { return &m_Analyser; }

    NoteHandler m_Handler;

private:
    static void call(CCommandSocket* socket, CCmdHead* command, unsigned long low, unsigned long high)
    {
        auto* const self =
            reinterpret_cast<NoteAnalyser*>(static_cast<unsigned long long>(high) << 32 | (low & 0xFFFFFFFF));
        self->m_Handler(socket, *static_cast<NoteCommand*>(command));
    }

    CCmdAnalyserSocket m_Analyser;
};

class Client : public CFrameworkClientSocket
{
public:
    explicit Client(CCmdAnalyserSocket* analyser) : CFrameworkClientSocket(analyser) {}

    using CCommandSocket::m_bNetError;
    using CCommandSocket::m_PacketReader;
    using CCommandSocket::m_PacketWriter;
};
using ClientHandle = zet::Unknown::Handle_T<Client>;

class Server : public CFrameworkServerSocket
{
public:
    explicit Server(CCmdAnalyserSocket* analyser, const wchar_t* ip = L"127.0.0.1")
        : CFrameworkServerSocket(ip, 0), m_pAnalyser(analyser)
    {
    }

    void onAccept() override
    {
        const ClientHandle client = m_Make ? m_Make() : ClientHandle(new Client(m_pAnalyser));
        if (accept(client))
            m_Accepted.push_back(client);
    }
    void Abandon(zet::TcpConnection* connection) override
    {
        ++m_Abandons;
        CFrameworkServerSocket::Abandon(connection);
    }

    CCmdAnalyserSocket* m_pAnalyser;
    std::function<ClientHandle()> m_Make;
    // Also held here, so that a test can inspect a connection that the server has released.
    std::vector<ClientHandle> m_Accepted;
    int m_Abandons = 0;
};

// Ticks, and waits in between like run(), until the condition holds. False after about ten seconds.
template <class Condition>
bool tickUntil(zet::System& system, Condition condition)
{
    for (int i = 0; i < 1000; ++i)
    {
        if (condition())
            return true;
        system.tick();
        if (condition())
            return true;
        system.wait();
    }
    return false;
}

// One System with a server that listens on a free port.
struct Loopback
{
    explicit Loopback(CCmdAnalyserSocket* serverAnalyser) : m_Server(new Server(serverAnalyser))
    {
        m_System.init();
        m_Server->start(&m_System);
        m_IsListening = m_Server->listen(0, 100);
    }
    ~Loopback()
    {
        for (const ClientHandle& client : m_Clients)
            client->close();
        m_Server->close();
        m_System.exit();
    }

    // A client that is established on both ends, or null.
    ClientHandle connect(CCmdAnalyserSocket* analyser)
    {
        const ClientHandle client = new Client(analyser);
        const size_t before = m_Server->m_Accepted.size();
        client->start(&m_System);
        m_Clients.push_back(client);
        if (!client->connect(L"127.0.0.1", m_Server->getPort(), false) ||
            !tickUntil(m_System,
                       [&] {
                           return client->getConnectionState() == zet::TcpConnection::kEstablished &&
                                  m_Server->m_Accepted.size() > before;
                       }))
            return nullptr;
        return client;
    }
    // The server's end of the latest connection.
    ClientHandle accepted() const { return m_Server->m_Accepted.back(); }

    zet::System m_System;
    zet::Unknown::Handle_T<Server> m_Server;
    std::vector<ClientHandle> m_Clients;
    bool m_IsListening = false;
};

} // namespace test
