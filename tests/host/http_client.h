// A client over TCP for tests of the HTTP server.
#pragma once

#include "net/tcp/stream.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <string>

namespace test
{

// A client that sends bytes and keeps what it gets.
class HttpClient
{
public:
    HttpClient(zet::System& system, unsigned short port) : m_System(system), m_Stream(new zet::TcpStream)
    {
        m_Stream->start(&system);
        EXPECT_TRUE(m_Stream->connect(L"127.0.0.1", port, false));
        EXPECT_TRUE(
            tickUntil(system, [&] { return m_Stream->getConnectionState() == zet::TcpConnection::kEstablished; }));
    }
    ~HttpClient()
    {
        m_Stream->close();
        m_Stream->stop();
    }
    bool send(const std::string& text)
    {
        return m_Stream->send(text.data(), static_cast<int>(text.size())) == static_cast<int>(text.size());
    }
    const std::string& received()
    {
        char piece[4096];
        for (int got; (got = m_Stream->read(piece, sizeof piece)) > 0 || (got = receiveNow(piece, sizeof piece)) > 0;)
            m_Text.append(piece, static_cast<size_t>(got));
        return m_Text;
    }
    bool isOver() const { return m_Stream->getConnectionState() != zet::TcpConnection::kEstablished; }
    bool getsEnd()
    {
        return tickUntil(m_System,
                         [&]
                         {
                             received();
                             return isOver();
                         });
    }
    bool gets(const std::string& text)
    {
        return tickUntil(m_System, [&] { return received().find(text) != std::string::npos; });
    }

    zet::System& m_System;
    zet::Unknown::Handle_T<zet::TcpStream> m_Stream;
    std::string m_Text;

private:
    int receiveNow(char* piece, int size)
    {
        const int got = m_Stream->peek(piece, size);
        return m_Stream->skip(got);
    }
};

} // namespace test
