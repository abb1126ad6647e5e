// The event stream of the HTTP server: what readers get, how many there are, and what a slow one holds.
#include "framework/time.h"
#include "host/inner/http_server.h"
#include "tests/host/http_client.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_handle.h"

#include <gtest/gtest.h>

namespace
{

using host::inner::EventSource;
using host::inner::HttpAnswer;
using host::inner::HttpRequest;
using host::inner::HttpServer;
using test::tickUntil;
using Client = test::HttpClient;

constexpr char kHead[] = "HTTP/1.1 200 OK\r\n"
                         "Content-Type: text/event-stream\r\n"
                         "X-Content-Type-Options: nosniff\r\n"
                         "Connection: close\r\n"
                         "\r\n";
const std::string kRequest = "GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n";

class HttpEvents : public testing::Test
{
protected:
    HttpEvents()
    {
        m_Events.add("races",
                     [this]
                     {
                         ++m_Asked;
                         return m_Text;
                     });
        m_Events.add("still", [] { return std::string("0"); });
        m_System.init();
        m_Server = zet::Unknown::Handle_T<HttpServer>(new HttpServer(
            [](const HttpRequest& request)
            {
                HttpAnswer answer;
                answer.m_Body = "other\n";
                if (request.m_Path == "/events")
                {
                    answer.m_Type = "text/event-stream";
                    answer.m_IsStream = true;
                }
                return answer;
            },
            &m_Events));
        EXPECT_TRUE(m_Server->start(&m_System) && m_Server->listen(0, 0));
    }
    ~HttpEvents() override
    {
        m_Server->close();
        m_System.exit();
    }
    std::unique_ptr<Client> read()
    {
        auto client = std::make_unique<Client>(m_System, m_Server->getPort());
        EXPECT_TRUE(client->send(kRequest));
        return client;
    }
    void tick(int count)
    {
        for (int i = 0; i < count; ++i)
            m_System.tick();
    }

    zet::TestClock m_Clock{1000000};
    zet::System m_System;
    EventSource m_Events;
    zet::Unknown::Handle_T<HttpServer> m_Server;
    std::string m_Text = "1";
    int m_Asked = 0;
};

TEST_F(HttpEvents, FirstRoundByteForByteAndThenChangesOnly)
{
    const auto client = read();
    const std::string first = std::string(kHead) + "event: races\ndata: 1\n\nevent: still\ndata: 0\n\n";
    ASSERT_TRUE(client->gets("data: 0\n\n"));
    EXPECT_EQ(client->received(), first);
    m_Text = "2";
    tick(20);
    EXPECT_EQ(client->received(), first);
    m_Clock.advance(EventSource::kInterval);
    ASSERT_TRUE(client->gets("data: 2\n\n"));
    EXPECT_EQ(client->received(), first + "event: races\ndata: 2\n\n");
    m_Clock.advance(EventSource::kInterval);
    tick(20);
    EXPECT_EQ(client->received(), first + "event: races\ndata: 2\n\n");
    // A later reader gets all texts.
    const auto second = read();
    EXPECT_TRUE(second->gets("event: races\ndata: 2\n\nevent: still\ndata: 0\n\n"));
}

TEST_F(HttpEvents, TextsAreAskedForOnceForAllReadersAndNotWithoutOne)
{
    tick(5);
    EXPECT_EQ(m_Asked, 0);
    {
        const auto first = read();
        const auto second = read();
        ASSERT_TRUE(first->gets("data: 0\n\n") && second->gets("data: 0\n\n"));
        EXPECT_EQ(m_Asked, 1);
        m_Clock.advance(EventSource::kInterval);
        tick(5);
        EXPECT_EQ(m_Asked, 2);
    }
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Server->getConnectionCount() == 0; }));
    m_Clock.advance(EventSource::kInterval * 10);
    tick(5);
    EXPECT_EQ(m_Asked, 2);
    // Also after so long that the clock has wrapped, a first reader is served at once.
    m_Clock.advance(0xA0000000u);
    const auto again = read();
    EXPECT_TRUE(again->gets("data: 0\n\n"));
}

TEST_F(HttpEvents, TextWithLineEndsIsOneEvent)
{
    m_Text = "a\n\nevent: evil\r\rb\r\n\r\nc\n";
    const auto client = read();
    ASSERT_TRUE(client->gets("event: still"));
    EXPECT_NE(client->received().find(
                  "event: races\ndata: a\ndata: \ndata: event: evil\ndata: \ndata: b\ndata: \ndata: c\ndata: \n\n"),
              std::string::npos)
        << client->received();
}

TEST_F(HttpEvents, TextThatIsTooLongOrThrowsIsLeftOut)
{
    test::LogLines lines;
    m_Events.add("thrown", []() -> std::string { throw std::runtime_error("no text"); });
    m_Text = std::string(EventSource::kMostText + 1, 'x');
    const auto client = read();
    ASSERT_TRUE(client->gets("data: 0\n\n"));
    EXPECT_EQ(client->received(), std::string(kHead) + "event: still\ndata: 0\n\n");
    m_Clock.advance(EventSource::kInterval);
    tick(5);
    int reported = 0;
    for (const std::wstring& line : lines.texts())
        reported += line == L"The event races has 65537 bytes and is not sent";
    EXPECT_EQ(reported, 1);
    m_Text.pop_back();
    m_Clock.advance(EventSource::kInterval);
    EXPECT_TRUE(client->gets("event: races\ndata: x"));
}

TEST_F(HttpEvents, HeadGetsNoStream)
{
    Client client(m_System, m_Server->getPort());
    ASSERT_TRUE(client.send("HEAD /events HTTP/1.1\r\nHost: localhost\r\n\r\n"));
    EXPECT_TRUE(client.getsEnd());
    EXPECT_EQ(client.received(), kHead);
    EXPECT_EQ(m_Asked, 0);
}

TEST_F(HttpEvents, OtherHostsAndCutRequestsGetNoStream)
{
    Client foreign(m_System, m_Server->getPort());
    ASSERT_TRUE(foreign.send("GET /events HTTP/1.1\r\nHost: evil.example\r\n\r\n"));
    EXPECT_TRUE(foreign.getsEnd());
    EXPECT_EQ(foreign.received().substr(0, 12), "HTTP/1.1 421");
    for (size_t size = 0; size < kRequest.size(); ++size)
    {
        Client cut(m_System, m_Server->getPort());
        ASSERT_TRUE(size == 0 || cut.send(kRequest.substr(0, size)));
        tick(2);
        ASSERT_TRUE(test::endOutput(cut.m_Stream->getHandle()));
        EXPECT_TRUE(cut.getsEnd());
        EXPECT_EQ(cut.received(), "") << size;
    }
    EXPECT_EQ(m_Asked, 0);
}

TEST_F(HttpEvents, ReaderThatSendsIsClosed)
{
    const auto talker = read();
    ASSERT_TRUE(talker->gets("data: 0\n\n"));
    ASSERT_TRUE(talker->send("G"));
    EXPECT_TRUE(talker->getsEnd());
    // So is one whose requests follow each other at once.
    Client pipelined(m_System, m_Server->getPort());
    ASSERT_TRUE(pipelined.send(kRequest + kRequest));
    EXPECT_TRUE(pipelined.getsEnd());
    EXPECT_EQ(pipelined.received(), kHead);
    EXPECT_EQ(m_Server->getConnectionCount(), 0);
}

TEST_F(HttpEvents, FurtherReadersAreRefusedAndOthersAreServed)
{
    std::vector<std::unique_ptr<Client>> readers;
    for (int i = 0; i < HttpServer::kMostStreams; ++i)
    {
        readers.push_back(read());
        ASSERT_TRUE(readers.back()->gets("data: 0\n\n"));
    }
    const auto further = read();
    EXPECT_TRUE(further->gets("too many streams\n"));
    EXPECT_EQ(further->received().substr(0, 12), "HTTP/1.1 503");
    ASSERT_TRUE(further->send("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n"));
    EXPECT_TRUE(further->gets("other\n"));
    readers.pop_back();
    ASSERT_TRUE(tickUntil(m_System, [&] { return m_Server->getConnectionCount() == HttpServer::kMostStreams; }));
    const auto next = read();
    EXPECT_TRUE(next->gets("data: 0\n\n"));
}

// Its output is what the operating system holds and one round.
TEST_F(HttpEvents, ReaderThatDoesNotReadMissesChangesAndIsClosed)
{
    const auto slow = read();
    ASSERT_TRUE(slow->gets("data: 0\n\n"));
    const auto quick = read();
    ASSERT_TRUE(quick->gets("data: 0\n\n"));
    slow->m_Stream->stop(); // so that it does not read
    int rounds = 0;
    for (; rounds < 5000 && m_Server->getConnectionCount() == 2; ++rounds)
    {
        m_Text = std::string(EventSource::kMostText - 10, 'x') + std::to_string(rounds);
        m_Clock.advance(EventSource::kInterval);
        tick(2);
        ASSERT_TRUE(quick->gets(std::to_string(rounds) + "\n\n"));
        quick->m_Text.clear();
    }
    EXPECT_EQ(m_Server->getConnectionCount(), 1);
    EXPECT_GE(rounds, static_cast<int>(HttpServer::kMostTime / EventSource::kInterval));
    EXPECT_FALSE(quick->isOver());
}

TEST_F(HttpEvents, SilentStreamGetsAComment)
{
    const auto client = read();
    ASSERT_TRUE(client->gets("data: 0\n\n"));
    client->m_Text.clear();
    m_Clock.advance(HttpServer::kMostTime - 1);
    tick(10);
    EXPECT_EQ(client->received(), "");
    m_Clock.advance(1);
    EXPECT_TRUE(client->gets(":\n\n"));
    EXPECT_FALSE(client->isOver());
}

} // namespace
