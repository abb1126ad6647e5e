// A service that renews its certificate when it gets SIGHUP.
#include "tests/host/service_steps.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <signal.h>

namespace
{

using test::ClientHandle;

class TlsService : public testing::Test
{
protected:
    TlsService() : m_Server(new test::Server(m_Analyser))
    {
        m_Service.onStart([this] { return m_Server->start(&m_Service.getSystem()) && m_Server->listen(0, 0); });
        m_Service.serve(*m_Server);
    }
    // Starts a client that trusts this authority alone.
    ClientHandle begin(const test::Authority& trusted)
    {
        const ClientHandle client(new test::Client(m_ClientAnalyser));
        EXPECT_TRUE(client->start(&m_Service.getSystem()) && client->setTlsContext(test::makeClientContext(trusted)) &&
                    client->connect(L"127.0.0.1", m_Server->getPort(), false));
        return client;
    }
    static bool isUp(const ClientHandle& client)
    {
        return client->getConnectionState() == zet::TcpConnection::kEstablished;
    }

    test::NoteAnalyser m_Analyser;
    test::NoteAnalyser m_ClientAnalyser;
    host::Service m_Service{L"zone", ""};
    test::ServiceSteps m_Steps{m_Service};
    const zet::Unknown::Handle_T<test::Server> m_Server;
};

TEST_F(TlsService, SighupGivesNewConnectionsTheRenewedCertificate)
{
    const test::Authority renewed("Renewed Authority");
    const test::Certificate certificate = renewed.issue({"server.example", {"127.0.0.1"}});
    const test::TextFile chain(test::serverCertificate().m_Chain);
    const test::TextFile key(test::serverCertificate().m_Key);
    const test::TlsHandle context(new zet::TlsContext);
    ASSERT_TRUE(context->setCertificateFiles(chain.widePath().c_str(), key.widePath().c_str()));
    ASSERT_TRUE(m_Server->setTlsContext(context));
    m_Service.useTls(*context);
    int reloads = 0;
    m_Service.onReload([&] { return ++reloads > 0; });

    ClientHandle first;
    ClientHandle second;
    ClientHandle third;
    const auto writeAndSignal = [&](const std::string& text, int count)
    {
        m_Steps.add(
            [&, text]
            {
                chain.write(text);
                key.write(certificate.m_Key);
                return raise(SIGHUP) == 0;
            });
        m_Steps.add([&reloads, count] { return reloads == count; });
    };
    const auto connect = [&](ClientHandle& client, const test::Authority& trusted)
    {
        m_Steps.add(
            [&]
            {
                client = begin(trusted);
                return true;
            });
        m_Steps.add([&] { return isUp(client); });
    };
    connect(first, test::someAuthority());
    writeAndSignal(certificate.m_Chain, 1);
    connect(second, renewed);
    // The invalid file leaves the pair before it in use.
    writeAndSignal("", 2);
    connect(third, renewed);
    m_Steps.add(
        [&]
        {
            EXPECT_TRUE(isUp(first));
            EXPECT_TRUE(isUp(second));
            return raise(SIGTERM) == 0;
        });
    EXPECT_EQ(m_Steps.run(), 0);
    EXPECT_TRUE(m_Steps.areDone());
    EXPECT_EQ(reloads, 2);
}

} // namespace
