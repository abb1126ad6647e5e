#include "host/inner/http_request.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using host::inner::HttpRequest;
using host::inner::readRequest;

struct Read
{
    explicit Read(const std::string& input) : m_State(readRequest(input, m_Request, m_Used)) {}

    HttpRequest m_Request;
    size_t m_Used = 0;
    HttpRequest::State m_State;
};

const std::string kScrape = "GET /metrics HTTP/1.1\r\nHost: localhost:9100\r\nUser-Agent: a\r\n\r\n";

TEST(HttpRequest, RequestOfAScrape)
{
    const Read read(kScrape + "GET /next");
    EXPECT_EQ(read.m_State, HttpRequest::kWhole);
    EXPECT_EQ(read.m_Used, kScrape.size());
    EXPECT_EQ(read.m_Request.m_Path, "/metrics");
    EXPECT_FALSE(read.m_Request.m_IsHead);
    EXPECT_TRUE(read.m_Request.m_KeepsAlive);
    EXPECT_FALSE(read.m_Request.m_WantsPlainText);
}

TEST(HttpRequest, EveryCutOfARequestNeedsMoreBytes)
{
    for (size_t size = 0; size < kScrape.size(); ++size)
        EXPECT_EQ(Read(kScrape.substr(0, size)).m_State, HttpRequest::kCut) << size;
}

TEST(HttpRequest, QueryIsNoPartOfThePath)
{
    EXPECT_EQ(Read("HEAD /readyz?verbose HTTP/1.1\r\nhost:\r\n\r\n").m_Request.m_Path, "/readyz");
    EXPECT_TRUE(Read("HEAD / HTTP/1.1\r\nhost:\r\n\r\n").m_Request.m_IsHead);
}

TEST(HttpRequest, ConnectionStaysOpenUnlessOneSideEndsIt)
{
    const auto keeps = [](const std::string& version, const std::string& fields)
    {
        const Read read("GET / HTTP/" + version + "\r\nHost: a\r\n" + fields + "\r\n");
        EXPECT_EQ(read.m_State, HttpRequest::kWhole) << fields;
        return read.m_Request.m_KeepsAlive;
    };
    EXPECT_TRUE(keeps("1.1", ""));
    EXPECT_TRUE(keeps("1.1", "Connection: keep-alive\r\n"));
    EXPECT_FALSE(keeps("1.1", "Connection: close\r\n"));
    EXPECT_FALSE(keeps("1.1", "connection: TE , Close\r\n"));
    EXPECT_FALSE(keeps("1.0", ""));
    EXPECT_FALSE(keeps("1.0", "Connection: keep-alive\r\n"));
}

TEST(HttpRequest, PlainTextOnlyForAClientThatDoesNotKnowOpenMetrics)
{
    const auto isPlain = [](const std::string& accepted)
    { return Read("GET / HTTP/1.1\r\nHost: a\r\nAccept: " + accepted + "\r\n\r\n").m_Request.m_WantsPlainText; };
    EXPECT_FALSE(isPlain("*/*"));
    EXPECT_TRUE(isPlain("text/plain"));
    EXPECT_TRUE(isPlain("text/html, Text/Plain;version=0.0.4;q=0.5"));
    EXPECT_FALSE(isPlain("application/openmetrics-text;version=1.0.0;q=0.5,text/plain;version=0.0.4;q=0.3,*/*;q=0.2"));
}

TEST(HttpRequest, WhatIsNotStrictlyARequestIsInvalid)
{
    const std::string end = " HTTP/1.1\r\nHost: a\r\n\r\n";
    const std::string invalid[] = {
        "\r\n\r\n",
        "GET\r\n\r\n",
        "GET /\r\n\r\n",
        "GET  / HTTP/1.1\r\nHost: a\r\n\r\n",
        "GET / HTTP/1.1 \r\nHost: a\r\n\r\n",
        " GET /" + end,
        "G(T /" + end,
        "GET metrics" + end,
        "GET http://a/metrics" + end,
        "GET * HTTP/1.1\r\nHost: a\r\n\r\n",
        "GET /\x80" + end,
        "GET / HTTP/2.0\r\nHost: a\r\n\r\n",
        "GET / HTTP/1.2\r\nHost: a\r\n\r\n",
        "GET / http/1.1\r\nHost: a\r\n\r\n",
        "GET / HTTP/1.1\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\nHost: a\r\n\r\n",
        "GET / HTTP/1.1\r\nHost : a\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\n folded\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\nnothing\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\n: nothing\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\n\r\nx",
        "GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 0, 5\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        "GET / HTTP/1.1\r\nHost: a\r\nUpgrade: h2c\r\n\r\n",
        // Line ends of LF, or of CR alone, at the first such byte.
        "GET / HTTP/1.1\n",
        "GET / HTTP/1.1\rH",
        std::string("GET /\0 HTTP/1.1", 15),
        "GET /\x7F",
        "\x16\x03\x01 TLS",
    };
    for (const std::string& input : invalid)
        EXPECT_EQ(Read(input).m_State, HttpRequest::kInvalid) << input;
}

TEST(HttpRequest, ContentLengthOfZeroIsNoBody)
{
    EXPECT_EQ(Read("GET / HTTP/1.1\r\nHost: a\r\nContent-Length: 0\r\n\r\n").m_State, HttpRequest::kWhole);
}

TEST(HttpRequest, OtherMethodsAreRefusedAsSuch)
{
    for (const char* const method : {"POST", "PUT", "DELETE", "OPTIONS", "TRACE", "CONNECT", "get", "PRI"})
        EXPECT_EQ(Read(std::string(method) + " / HTTP/1.1\r\nHost: a\r\n\r\n").m_State, HttpRequest::kOtherMethod)
            << method;
}

TEST(HttpRequest, HeadOfMoreThan8192BytesIsTooLong)
{
    const std::string start = "GET / HTTP/1.1\r\nHost: a\r\nX: ";
    const auto headOf = [&](size_t size) { return start + std::string(size - start.size() - 4, 'x') + "\r\n\r\n"; };
    EXPECT_EQ(Read(headOf(8192)).m_State, HttpRequest::kWhole);
    EXPECT_EQ(Read(headOf(8193)).m_State, HttpRequest::kTooLong);
    EXPECT_EQ(Read(headOf(100000)).m_State, HttpRequest::kTooLong);
    EXPECT_EQ(Read(headOf(8192).substr(0, 8191)).m_State, HttpRequest::kCut);
}

// Neither crashes nor reads beyond the input, whatever the bytes are.
TEST(HttpRequest, EveryChangedByteHasAnAnswer)
{
    for (size_t at = 0; at < kScrape.size(); ++at)
        for (int value = 0; value < 256; ++value)
        {
            std::string input = kScrape;
            input[at] = static_cast<char>(value);
            const Read read(input);
            EXPECT_LE(read.m_Used, input.size());
        }
    std::mt19937 random(1);
    const std::string units = "GET / HTP1.\r\n:ahost ";
    for (int i = 0; i < 20000; ++i)
    {
        std::string input(random() % 80, ' ');
        for (char& unit : input)
            unit = units[random() % units.size()];
        EXPECT_LE(Read(input).m_Used, input.size());
    }
}

} // namespace
