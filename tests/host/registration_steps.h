// A registry that announces new and leaving servers to the others only, and servers that keep themselves registered.
#pragma once

#include "framework/time.h"
#include "host/registration.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace test
{

inline constexpr wchar_t kHost[] = L"127.0.0.1";

inline zet::Uuid idOf(unsigned int number)
{
    zet::Uuid id;
    id.m_Data1 = number;
    return id;
}

template <class To>
To copied(const CCmdServerRegister& from)
{
    To to;
    to.m_ServerType = from.m_ServerType;
    to.m_ServerId = from.m_ServerId;
    to.m_ServerName = from.m_ServerName;
    to.m_ServerAddress[0] = from.m_ServerAddress[0];
    to.m_ServerPort = from.m_ServerPort;
    return to;
}

// A registry in the System of the test.
class Registry
{
public:
    explicit Registry(zet::System& system, unsigned short port = 0) : m_System(system), m_Server(new Port(*this))
    {
        m_Handlers.on<CCmdServerRegister>([this](CCommandSocket& socket, const CCmdServerRegister& command)
                                          { onRegister(socket, command); });
        m_Handlers.on<CCmdServerUnregister>([this](CCommandSocket& socket, const CCmdServerUnregister&)
                                            { fade(socket); });
        m_Handlers.on<CCmdServerEcho>(
            [this](CCommandSocket& socket, const CCmdServerEcho& echo)
            {
                ++m_Echoes;
                CCmdServerEchoReply reply;
                reply.m_Data = echo.m_Data;
                if (!m_IsSilent)
                    socket.send(reply);
            });
        m_Server->start(&m_System);
        EXPECT_TRUE(m_Server->listen(port, 100));
    }
    ~Registry() { end(); }

    void end()
    {
        for (auto& [socket, record] : m_Registered)
            socket->close();
        m_Registered.clear();
        m_Server->close();
        m_Server->stop();
    }
    unsigned short getPort() const { return m_Server->zet::TcpServer::getPort(); }

    int m_Attempts = 0;
    int m_Echoes = 0;
    bool m_IsSilent = false;
    bool m_Refuses = false;
    std::vector<std::pair<ClientHandle, CCmdServerRegister>> m_Registered;

private:
    class Port : public Server
    {
    public:
        explicit Port(Registry& registry) : Server(registry.m_Analyser.get()), m_Registry(registry) {}
        void Abandon(zet::TcpConnection* connection) override
        {
            m_Registry.fade(static_cast<CCommandSocket&>(*connection));
            Server::Abandon(connection);
        }

    private:
        Registry& m_Registry;
    };

    void onRegister(CCommandSocket& socket, const CCmdServerRegister& command)
    {
        ++m_Attempts;
        if (m_IsSilent)
            return;
        if (m_Refuses)
        {
            CCmdServerRegisterFail fail;
            fail.m_Msg = L"full";
            socket.send(fail);
            return;
        }
        CCmdServerRegisterSuccess success;
        success.m_ServerId = command.m_ServerId;
        socket.send(success);
        for (auto& [other, record] : m_Registered)
            other->send(copied<CCmdServerNewNotify>(command));
        m_Registered.emplace_back(static_cast<Client*>(&socket), command);
    }
    void fade(CCommandSocket& socket)
    {
        const auto found = std::find_if(m_Registered.begin(), m_Registered.end(),
                                        [&](const auto& each) { return each.first.get() == &socket; });
        if (found == m_Registered.end())
            return;
        const auto notify = copied<CCmdServerFadeNotify>(found->second);
        m_Registered.erase(found);
        for (auto& [other, record] : m_Registered)
            other->send(notify);
    }

    zet::System& m_System;
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    zet::Unknown::Handle_T<Port> m_Server;
};

// A server with a port of its own.
class Member
{
public:
    Member(zet::System& system, unsigned char type, unsigned int id) : m_Registration(system)
    {
        EXPECT_TRUE(m_Registration.acceptGreetings(m_Handlers));
        m_Server->start(&system);
        EXPECT_TRUE(m_Server->listen(0, 100));
        m_Record.m_ServerType = type;
        m_Record.m_ServerId = idOf(id);
        m_Record.m_ServerName = std::to_wstring(id).c_str();
        m_Record.m_ServerAddress[0] = kHost;
        m_Record.m_ServerPort = m_Server->zet::TcpServer::getPort();
        m_Registration.setRecord(m_Record);
        m_Registration.onServer([this](const CCmdServerRegister& server) { note('+', server); });
        m_Registration.onGone([this](const CCmdServerRegister& server) { note('-', server); });
        m_Registration.onShutdown([this] { m_Events += "shutdown "; });
    }
    ~Member()
    {
        m_Registration.stop();
        m_Server->close();
        m_Server->stop();
    }

    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    zet::Unknown::Handle_T<Server> m_Server{new Server(m_Analyser.get())};
    CCmdServerRegister m_Record;
    // "+2 " for a server with this id that was found, "-2 " for one that is gone.
    std::string m_Events;
    host::Registration m_Registration;

private:
    void note(char sign, const CCmdServerRegister& server)
    {
        m_Events += sign + std::to_string(server.m_ServerId.m_Data1) + " ";
    }
};

// A server at whose port each greeting ends without an answer.
class DeafServer
{
public:
    explicit DeafServer(zet::System& system)
    {
        m_Handlers.on<CCmdServerHello>(
            [this](CCommandSocket& socket, const CCmdServerHello&)
            {
                ++m_Greetings;
                socket.close();
            });
        m_Server->start(&system);
        EXPECT_TRUE(m_Server->listen(0, 100));
    }
    ~DeafServer()
    {
        m_Server->close();
        m_Server->stop();
    }
    CCmdServerNewNotify getNotify() const
    {
        CCmdServerNewNotify notify;
        notify.m_ServerType = 2;
        notify.m_ServerId = idOf(2);
        notify.m_ServerAddress[0] = kHost;
        notify.m_ServerPort = m_Server->zet::TcpServer::getPort();
        return notify;
    }

    int m_Greetings = 0;

private:
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    zet::Unknown::Handle_T<Server> m_Server{new Server(m_Analyser.get())};
};

} // namespace test
