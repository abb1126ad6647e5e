// A service whose ports are behind a proxy.
#include "tests/host/service_steps.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/proxy_header.h"

#include <gtest/gtest.h>

namespace
{

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(ServiceProxy, ServedPortsExpectTheHeaderOfTheProxy)
{
    const test::LogLines log;
    test::NoteAnalyser analyser;
    host::Service service(L"zone", "Runs a zone of the game.");
    // One is served before the run, the other at its start.
    const zet::Unknown::Handle_T<test::Server> servers[] = {new test::Server(analyser), new test::Server(analyser)};
    service.serve(*servers[0]);
    test::ServiceSteps steps(service);
    std::vector<zet::Unknown::Handle_T<zet::TcpStream>> proxies;
    service.onStart(
        [&]
        {
            service.serve(*servers[1]);
            for (const auto& server : servers)
                if (!server->start(&service.getSystem()) || !server->listen(0, 5))
                    return false;
            for (const auto& server : servers)
            {
                proxies.push_back(new zet::TcpStream);
                const test::Bytes header = test::headerOfPeer("203.0.113.7", 4711);
                if (!proxies.back()->start(&service.getSystem()) ||
                    !proxies.back()->connect(L"127.0.0.1", server->getPort(), false) ||
                    proxies.back()->send(header.data(), static_cast<int>(header.size())) == 0)
                    return false;
            }
            return true;
        });
    steps.add([&] { return servers[0]->m_Accepted.size() == 1 && servers[1]->m_Accepted.size() == 1; });
    steps.add(
        [&]
        {
            for (const auto& server : servers)
                EXPECT_STREQ(server->m_Accepted.front()->getPeerName(), L"203.0.113.7:4711");
            service.getSystem().shutdown();
            return true;
        });
    EXPECT_EQ(steps.run({"--proxy-from", "10.0.0.0/8 127.0.0.1"}), host::kExitGood);
    EXPECT_TRUE(steps.areDone());
    for (const auto& each : proxies)
    {
        each->close();
        each->stop();
    }
    for (const auto& each : servers)
        each->close();
}

TEST(ServiceProxy, NetworksThatAreNotValidAreAUsageError)
{
    for (const char* const networks : {"proxy.example", "10.0.0.0/8,127.0.0.1", "10.0.0.0/33"})
    {
        host::Service service(L"zone", "Runs a zone of the game.");
        test::ServiceSteps steps(service);
        CaptureStderr();
        EXPECT_EQ(steps.run({"--proxy-from", networks}), host::kExitUsage);
        EXPECT_EQ(GetCapturedStderr().find("zone: --proxy-from needs networks such as 10.0.0.0/8"), 0u);
    }
}

} // namespace
