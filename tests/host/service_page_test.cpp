// The pages and events of a service, as its HTTP server answers.
#include "tests/host/http_client.h"
#include "tests/host/service_steps.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

constexpr wchar_t kPortLine[] = L"HTTP on 127.0.0.1:";

// What the service sends for a request until it ends the connection, or until the answer contains the text.
std::string answerOf(host::Service& service, const std::string& request, const std::string& last = "")
{
    test::LogLines lines;
    service.setHttpPort(0);
    test::ServiceSteps steps(service);
    zet::System clients;
    clients.init();
    std::unique_ptr<test::HttpClient> client;
    std::string answer;
    steps.add(
        [&]
        {
            for (const std::wstring& line : lines.texts())
                if (line.rfind(kPortLine, 0) == 0)
                    client = std::make_unique<test::HttpClient>(
                        clients,
                        static_cast<unsigned short>(std::wcstol(line.c_str() + std::size(kPortLine) - 1, nullptr, 10)));
            return client && client->send(request);
        });
    steps.add(
        [&]
        {
            clients.tick();
            answer = client->received();
            return client->isOver() || (!last.empty() && answer.find(last) != std::string::npos);
        });
    steps.add(
        [&]
        {
            service.getSystem().shutdown();
            return true;
        });
    EXPECT_EQ(steps.run(), host::kExitGood);
    EXPECT_TRUE(steps.areDone());
    client.reset();
    clients.exit();
    return answer;
}

std::string requestOf(const std::string& path, const std::string& host = "localhost")
{
    return "GET " + path + " HTTP/1.1\r\nHost: " + host + "\r\nConnection: close\r\n\r\n";
}

TEST(ServicePage, PageHasItsTypeAndMayLoadFromItsServerOnly)
{
    host::Service service(L"paged", "Has a page.");
    service.addPage("/", "text/html; charset=utf-8", "<!doctype html>");
    EXPECT_EQ(answerOf(service, requestOf("/?query")),
              "HTTP/1.1 200 OK\r\n"
              "Content-Type: text/html; charset=utf-8\r\n"
              "Content-Length: 15\r\n"
              "X-Content-Type-Options: nosniff\r\n"
              "Connection: close\r\n"
              "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
              "img-src 'self' data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n"
              "Cross-Origin-Resource-Policy: same-origin\r\n"
              "Referrer-Policy: no-referrer\r\n"
              "Cache-Control: no-cache\r\n"
              "\r\n"
              "<!doctype html>");
}

TEST(ServicePage, OtherPathsAndHostsGetNoPage)
{
    for (const char* const path : {"/page", "//", "/.", "/%2F", "/events"})
    {
        host::Service service(L"paged", "Has a page.");
        service.addPage("/", "text/html", "page");
        EXPECT_EQ(answerOf(service, requestOf(path)).substr(0, 12), "HTTP/1.1 404") << path;
    }
    host::Service service(L"paged", "Has a page.");
    service.addPage("/", "text/html", "page");
    EXPECT_EQ(answerOf(service, requestOf("/", "evil.example")).substr(0, 12), "HTTP/1.1 421");
}

TEST(ServicePage, PathsOfTheServiceStayItsOwn)
{
    host::Service service(L"paged", "Has a page.");
    service.addPage("/healthz", "text/html", "page");
    EXPECT_NE(answerOf(service, requestOf("/healthz")).find("\r\n\r\nok\n"), std::string::npos);
}

TEST(ServicePage, EventsAreAStream)
{
    host::Service service(L"paged", "Has events.");
    service.addEvent("races", [] { return std::string("[]"); });
    EXPECT_EQ(answerOf(service, requestOf("/events"), "[]"), "HTTP/1.1 200 OK\r\n"
                                                             "Content-Type: text/event-stream\r\n"
                                                             "X-Content-Type-Options: nosniff\r\n"
                                                             "Connection: close\r\n"
                                                             "Cross-Origin-Resource-Policy: same-origin\r\n"
                                                             "Cache-Control: no-store\r\n"
                                                             "\r\n"
                                                             "event: races\ndata: []\n\n");
}

} // namespace
