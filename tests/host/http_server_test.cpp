#include "host/inner/http_server.h"

#include "framework/time.h"
#include "tests/host/http_client.h"
#include "tests/support/loopback.h"
#include "tests/support/raw_handle.h"

#include <gtest/gtest.h>

namespace
{

using host::inner::HttpAnswer;
using host::inner::HttpRequest;
using host::inner::HttpServer;
using Client = test::HttpClient;
using test::tickUntil;

class Http : public testing::Test
{
protected:
    Http()
        : m_Server(new HttpServer(
              [this](const HttpRequest& request)
              {
                  ++m_Requests;
                  if (request.m_Path == "/throw")
                      throw std::runtime_error("no answer");
                  HttpAnswer answer;
                  answer.m_Status = request.m_Path == "/none" ? 404 : 200;
                  answer.m_Body = request.m_Path == "/large" ? std::string(kLarge, 'x') : request.m_Path + "\n";
                  return answer;
              }))
    {
        m_System.init();
        EXPECT_TRUE(m_Server->start(&m_System) && m_Server->listen(0, 0));
    }
    ~Http() override
    {
        m_Server->close();
        m_System.exit();
    }
    static std::string request(const std::string& path, const std::string& fields = "")
    {
        return "GET " + path + " HTTP/1.1\r\nHost: localhost\r\n" + fields + "\r\n";
    }
    // What a client gets for this until the server ends the connection.
    std::string answerTo(const std::string& text)
    {
        Client client(m_System, m_Server->getPort());
        EXPECT_TRUE(client.send(text));
        EXPECT_TRUE(client.getsEnd()) << text;
        return client.received();
    }
    // More than the system's buffers of both sides.
    static constexpr size_t kLarge = 32 * 1024 * 1024;

    zet::TestClock m_Clock{1000000};
    zet::System m_System;
    const zet::Unknown::Handle_T<HttpServer> m_Server;
    int m_Requests = 0;
};

TEST_F(Http, AnswerByteForByte)
{
    EXPECT_EQ(answerTo(request("/a", "Connection: close\r\n")), "HTTP/1.1 200 OK\r\n"
                                                                "Content-Type: text/plain; charset=utf-8\r\n"
                                                                "Content-Length: 3\r\n"
                                                                "X-Content-Type-Options: nosniff\r\n"
                                                                "Connection: close\r\n"
                                                                "\r\n"
                                                                "/a\n");
}

TEST_F(Http, HeadGetsTheLengthWithoutTheBody)
{
    const std::string answer = answerTo("HEAD /four HTTP/1.0\r\n\r\n");
    EXPECT_NE(answer.find("Content-Length: 6\r\n"), std::string::npos);
    EXPECT_EQ(answer.substr(answer.size() - 4), "\r\n\r\n");
}

TEST_F(Http, FaultsHaveTheirStatusAndEndTheConnection)
{
    const auto statusOf = [&](const std::string& text) { return answerTo(text).substr(0, 12); };
    EXPECT_EQ(statusOf("nonsense\r\n\r\n"), "HTTP/1.1 400");
    EXPECT_EQ(statusOf("nonsense\n"), "HTTP/1.1 400");
    EXPECT_EQ(statusOf("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 5\r\n\r\nhello"), "HTTP/1.1 405");
    EXPECT_NE(answerTo("POST / HTTP/1.1\r\nHost: a\r\n\r\n").find("Allow: GET, HEAD\r\n"), std::string::npos);
    EXPECT_EQ(statusOf("GET / HTTP/1.1\r\n" + std::string(8192, 'x')), "HTTP/1.1 431");
    EXPECT_EQ(statusOf("GET / HTTP/1.1\r\n" + std::string(200000, 'x')), "HTTP/1.1 431");
    EXPECT_EQ(m_Requests, 0);
    EXPECT_EQ(statusOf(request("/none", "Connection: close\r\n")), "HTTP/1.1 404");
    EXPECT_EQ(statusOf(request("/throw", "Connection: close\r\n")), "HTTP/1.1 500");
}

// A page of a foreign site that has its name resolve to 127.0.0.1 gets nothing.
TEST_F(Http, RequestsForOtherHostsAreRefused)
{
    const auto statusOf = [&](const std::string& host)
    { return answerTo("GET /a HTTP/1.1\r\nHost: " + host + "\r\nConnection: close\r\n\r\n").substr(0, 12); };
    for (const char* const host : {"localhost", "LocalHost", "localhost:9100", "127.0.0.1", "127.0.0.1:80", "[::1]",
                                   "[::1]:65535", "localhost:"})
        EXPECT_EQ(statusOf(host), "HTTP/1.1 200") << host;
    const int served = m_Requests;
    for (const char* const host :
         {"evil.example", "evil.example:80", "localhost.evil.example", "127.0.0.1.evil.example", "127.0.0.2",
          "192.0.2.1", "[::2]", "[::1", "[::1]x", "::1", "localhost:a", "localhost:80:80", "a@localhost", ""})
        EXPECT_EQ(statusOf(host), "HTTP/1.1 421") << host;
    EXPECT_EQ(m_Requests, served);
    // No browser: it names no host.
    EXPECT_EQ(answerTo("GET /a HTTP/1.0\r\n\r\n").substr(0, 12), "HTTP/1.1 200");
}

TEST_F(Http, HostThatIsAllowedIsServed)
{
    m_Server->allowHost("Metrics.Example");
    m_Server->allowHost("[fd00::1]");
    for (const char* const host : {"metrics.example", "METRICS.example:9100", "[FD00::1]:80"})
        EXPECT_EQ(
            answerTo(std::string("GET /a HTTP/1.1\r\nHost: ") + host + "\r\nConnection: close\r\n\r\n").substr(0, 12),
            "HTTP/1.1 200")
            << host;
    EXPECT_EQ(answerTo("GET /a HTTP/1.1\r\nHost: example\r\n\r\n").substr(0, 12), "HTTP/1.1 421");
}

TEST_F(Http, OneConnectionServesRequestAfterRequest)
{
    Client client(m_System, m_Server->getPort());
    for (const char* const path : {"/one", "/two", "/none", "/three"})
    {
        ASSERT_TRUE(client.send(request(path)));
        EXPECT_TRUE(client.gets(std::string(path) + "\n"));
    }
    EXPECT_FALSE(client.isOver());
    EXPECT_EQ(m_Server->getConnectionCount(), 1);
}

TEST_F(Http, PipelinedRequestsAreAnsweredInOrder)
{
    std::string all;
    for (int i = 0; i < 100; ++i)
        all += request("/" + std::to_string(i));
    const std::string answers = answerTo(all + request("/last", "Connection: close\r\n") + request("/beyond"));
    size_t at = 0;
    for (int i = 0; i < 100; ++i)
    {
        at = answers.find("\r\n\r\n/" + std::to_string(i) + "\n", at);
        ASSERT_NE(at, std::string::npos) << i;
    }
    EXPECT_NE(answers.find("/last\n", at), std::string::npos);
    EXPECT_EQ(m_Requests, 101);
}

TEST_F(Http, RequestInPiecesIsRead)
{
    Client client(m_System, m_Server->getPort());
    const std::string text = request("/pieces");
    for (const char unit : text)
    {
        ASSERT_TRUE(client.send(std::string(1, unit)));
        m_System.tick();
        m_System.tick();
    }
    EXPECT_TRUE(client.gets("/pieces\n"));
}

TEST_F(Http, ClientThatEndsItsOutputGetsItsAnswer)
{
    Client client(m_System, m_Server->getPort());
    ASSERT_TRUE(client.send(request("/half")));
    m_System.tick();
    ASSERT_TRUE(test::endOutput(client.m_Stream->getHandle()));
    EXPECT_TRUE(client.getsEnd());
    EXPECT_NE(client.received().find("/half\n"), std::string::npos);
}

TEST_F(Http, ClientThatDoesNotReadHoldsOneAnswerUntilItsTimeIsOver)
{
    Client client(m_System, m_Server->getPort());
    ASSERT_TRUE(client.send(request("/large") + request("/large") + request("/large")));
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Requests == 1; }));
    for (int i = 0; i < 50; ++i)
        m_System.tick();
    EXPECT_EQ(m_Requests, 1);
    m_Clock.advance(HttpServer::kMostTime - 1);
    m_System.tick();
    EXPECT_EQ(m_Server->getConnectionCount(), 1);
    m_Clock.advance(1);
    m_System.tick();
    EXPECT_EQ(m_Server->getConnectionCount(), 0);
}

TEST_F(Http, SlowRequestEndsWithItsTime)
{
    Client slow(m_System, m_Server->getPort());
    Client silent(m_System, m_Server->getPort());
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Server->getConnectionCount() == 2; }));
    // A byte now and then gives no more time.
    for (unsigned int passed = 0; passed < HttpServer::kMostTime; passed += 1000)
    {
        ASSERT_TRUE(slow.send("G"));
        m_System.tick();
        EXPECT_EQ(m_Server->getConnectionCount(), 2);
        m_Clock.advance(1000);
    }
    m_System.tick();
    EXPECT_EQ(m_Server->getConnectionCount(), 0);
    EXPECT_TRUE(slow.getsEnd());
    EXPECT_EQ(slow.received(), "");
}

TEST_F(Http, ConnectionsBeyondTheBoundAreClosed)
{
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < HttpServer::kMostConnections; ++i)
        clients.push_back(std::make_unique<Client>(m_System, m_Server->getPort()));
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Server->getConnectionCount() == HttpServer::kMostConnections; }));
    Client further(m_System, m_Server->getPort());
    EXPECT_TRUE(further.getsEnd());
    EXPECT_EQ(m_Server->getConnectionCount(), +HttpServer::kMostConnections);
    ASSERT_TRUE(clients.front()->send(request("/served")));
    EXPECT_TRUE(clients.front()->gets("/served\n"));
    // A place that is free again is used.
    clients.pop_back();
    ASSERT_TRUE(
        tickUntil(m_System, [&] { return m_Server->getConnectionCount() == HttpServer::kMostConnections - 1; }));
    Client next(m_System, m_Server->getPort());
    ASSERT_TRUE(next.send(request("/next")));
    EXPECT_TRUE(next.gets("/next\n"));
}

} // namespace
