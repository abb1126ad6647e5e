// Compares the documents with the code: the defaults of the limits, and the names of tests.
#include "framework/inner/log_mailbox.h"
#include "framework/json.h"
#include "framework/peer_log.h"
#include "host/inner/http_server.h"
#include "net/door/names.h"
#include "net/limits.h"
#include "net/quic/connection.h"
#include "net/quic/server.h"
#include "net/session/module.h"
#include "net/session/session.h"
#include "net/tcp/inner/race.h"
#include "net/tcp/server.h"
#include "net/tls/context.h"
#include "packaging/cmd_packager.h"
#include "packaging/wire/quirks.h"
#include "tests/support/places.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace
{

const std::filesystem::path kTests(test::getTestsFolder());

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Documents, TheTableOfLimitsHasTheDefaults)
{
    using Udp = zet::UdpServer;
    const Udp::Settings udp;
    const zet::NetLimits limitsOfPort;
    const std::map<std::string, long long> limits = {
        {"zet::PacketReader::kDefaultLimit", zet::PacketReader::kDefaultLimit},
        {"zet::TcpConnection::kDefaultOutputLimit", zet::TcpConnection::kDefaultOutputLimit},
        {"zet::TcpServer::kAcceptsPerTick", zet::TcpServer::kAcceptsPerTick},
        {"zet::TcpServer::kAcceptTime", zet::TcpServer::kAcceptTime},
        {"zet::TcpServer::kRestTime", zet::TcpServer::kRestTime},
        {"zet::inner::kMostLookups", static_cast<long long>(zet::inner::kMostLookups)},
        {"zet::inner::TcpRace::kMostAddresses", static_cast<long long>(zet::inner::TcpRace::kMostAddresses)},
        {"CCommandSocket::kDispatchTime", CCommandSocket::kDispatchTime},
        {"zet::TlsContext::kDefaultHandshakeTime", zet::TlsContext::kDefaultHandshakeTime},
        {"zet::TlsContext::kHandshakeInput", zet::TlsContext::kHandshakeInput},
        {"zet::TlsContext::kKeptSessions", zet::TlsContext::kKeptSessions},
        {"zet::TlsContext::kFileLimit", zet::TlsContext::kFileLimit},
        {"zet::UdpServer::Settings::m_ConnectionLimit", udp.m_ConnectionLimit},
        {"zet::NetLimits::m_Connections", limitsOfPort.m_Connections},
        {"zet::NetLimits::m_ConnectionsPerAddress", limitsOfPort.m_ConnectionsPerAddress},
        {"zet::NetLimits::m_ConnectionsPerSubnet", limitsOfPort.m_ConnectionsPerSubnet},
        {"zet::NetLimits::m_FirstInput", limitsOfPort.m_FirstInput},
        {"zet::NetLimits::m_InputSum", limitsOfPort.m_InputSum},
        {"zet::NetLimits::m_OutputSum", limitsOfPort.m_OutputSum},
        {"zet::NetLimits::m_TurnInput", limitsOfPort.m_TurnInput},
        {"zet::PacketReader::kEmptyAtOnce", zet::PacketReader::kEmptyAtOnce},
        {"zet::PeerLog::kBurst", zet::PeerLog::kBurst},
        {"zet::PeerLog::kInterval", zet::PeerLog::kInterval},
        {"zet::inner::LogMailbox::kMaxLines", static_cast<long long>(zet::inner::LogMailbox::kMaxLines)},
        {"zet::inner::LogMailbox::kMaxUnits", static_cast<long long>(zet::inner::LogMailbox::kMaxUnits)},
        {"zet::NetLimits::m_TurnTime", limitsOfPort.m_TurnTime},
        {"zet::NetLimits::m_ProbeAfter", limitsOfPort.m_ProbeAfter},
        {"zet::NetLimits::m_ProbeEvery", limitsOfPort.m_ProbeEvery},
        {"zet::NetLimits::m_Probes", limitsOfPort.m_Probes},
        {"zet::NetLimits::m_UnacknowledgedTime", limitsOfPort.m_UnacknowledgedTime},
        {"zet::NetLimits::m_IdleTime", limitsOfPort.m_IdleTime},
        {"zet::NetLimits::m_ConnectTime", limitsOfPort.m_ConnectTime},
        {"zet::NetLimits::m_HandshakeLimit", limitsOfPort.m_HandshakeLimit},
        {"zet::NetLimits::m_ProxyHeaders", limitsOfPort.m_ProxyHeaders},
        {"zet::NetLimits::m_ProxyHeaderTime", limitsOfPort.m_ProxyHeaderTime},
        {"zet::NetLimits::m_PacketsPerSecond", limitsOfPort.m_PacketsPerSecond},
        {"zet::NetLimits::m_PacketBurst", limitsOfPort.m_PacketBurst},
        {"zet::NetLimits::m_BytesPerSecond", limitsOfPort.m_BytesPerSecond},
        {"zet::NetLimits::m_ByteBurst", limitsOfPort.m_ByteBurst},
        {"zet::NetLimits::m_LogLines", limitsOfPort.m_LogLines},
        {"zet::NetLimits::m_LogLinesPerSecond", limitsOfPort.m_LogLinesPerSecond},
        {"zet::NetLimits::m_HandshakeSteps", limitsOfPort.m_HandshakeSteps},
        {"host::inner::HttpServer::kMostConnections", host::inner::HttpServer::kMostConnections},
        {"host::inner::HttpServer::kMostStreams", host::inner::HttpServer::kMostStreams},
        {"host::inner::EventSource::kMostText", static_cast<long long>(host::inner::EventSource::kMostText)},
        {"host::inner::HttpServer::kMostTime", host::inner::HttpServer::kMostTime},
        {"host::inner::HttpRequest::kMostHead", static_cast<long long>(host::inner::HttpRequest::kMostHead)},
        {"zet::NetLimits::m_HandshakeTime", limitsOfPort.m_HandshakeTime},
        {"zet::UdpServer::Settings::m_InputLimit", udp.m_InputLimit},
        {"zet::UdpServer::Settings::m_ConnectTimeout", udp.m_ConnectTimeout},
        {"zet::UdpServer::Settings::m_IdleTimeout", udp.m_IdleTimeout},
        {"zet::UdpServer::Settings::m_LingerTime", udp.m_LingerTime},
        {"zet::UdpServer::kDatagramsPerTick", Udp::kDatagramsPerTick},
        {"zet::UdpServer::kReceiveTime", Udp::kReceiveTime},
        {"zet::UdpServer::kGreetingsPerTick", Udp::kGreetingsPerTick},
        {"zet::UdpServer::kAdmissionsPerTick", Udp::kAdmissionsPerTick},
        {"zet::UdpServer::kMostUserData", Udp::kMostUserData},
        {"zet::UdpServer::UdpConnection::kDefaultOutputLimit", Udp::UdpConnection::kDefaultOutputLimit},
        {"UdpClientSocket::kFrameLimit", UdpClientSocket::kFrameLimit},
        {"zet::NetModule::kDefaultMessageLimit", zet::NetModule::kDefaultMessageLimit},
        {"zet::NetSession::kGreetingTime", zet::NetSession::kGreetingTime},
        {"zet::NetSession::kDispatchTime", zet::NetSession::kDispatchTime},
        {"CCmdPackager::kMaxDataSize", CCmdPackager::kMaxDataSize},
        {"CCmdPackager::kMaxTextUnits", CCmdPackager::kMaxTextUnits},
        {"CCmdPackager::kMaxBufferSize", CCmdPackager::kMaxBufferSize},
        {"wire::kTrustedCount", wire::kTrustedCount},
        {"zet::Json::kMaxDepth", zet::Json::kMaxDepth},
    };
    const std::string page = contentOf(kTests.parent_path() / "docs" / "operating.md");
    const std::regex row(R"(\n\| `([A-Za-z_:]+)` \| ([0-9,]+) \|)");
    std::set<std::string> told;
    for (auto at = std::sregex_iterator(page.begin(), page.end(), row); at != std::sregex_iterator(); ++at)
    {
        const std::string name = (*at)[1];
        std::string number = (*at)[2];
        std::erase(number, ',');
        const auto limit = limits.find(name);
        ASSERT_NE(limit, limits.end()) << name;
        EXPECT_EQ(std::stoll(number), limit->second) << name;
        told.insert(name);
    }
    EXPECT_EQ(told.size(), limits.size());
}

// Every link to a file of the tree in the page for contributors leads to one.
TEST(Documents, TheFilesThatThePageForContributorsNamesExist)
{
    const std::string page = contentOf(kTests.parent_path() / "CONTRIBUTING.md");
    const std::regex link(R"(\]\(([A-Za-z_./]+)(#\w+)?\))");
    int named = 0;
    for (auto at = std::sregex_iterator(page.begin(), page.end(), link); at != std::sregex_iterator(); ++at, ++named)
        EXPECT_TRUE(std::filesystem::exists(kTests.parent_path() / (*at)[1].str())) << (*at)[1];
    EXPECT_GE(named, 12);
}

// Every name of the form `Suite.Fact` in SECURITY.md is a test of this tree.
TEST(Documents, TheTestsThatThePageOnSecurityNamesExist)
{
    std::set<std::string> tests;
    const std::regex macro(R"(\nTEST(_F|_P)?\((\w+),\s*(\w+)\))");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kTests))
        if (entry.path().extension() == ".cpp")
        {
            const std::string source = contentOf(entry.path());
            for (auto at = std::sregex_iterator(source.begin(), source.end(), macro); at != std::sregex_iterator();
                 ++at)
                tests.insert((*at)[2].str() + '.' + (*at)[3].str());
        }
    const std::string page = contentOf(kTests.parent_path() / "SECURITY.md");
    const std::regex name(R"(`([A-Z]\w*\.[A-Z]\w+)`)");
    int named = 0;
    for (auto at = std::sregex_iterator(page.begin(), page.end(), name); at != std::sregex_iterator(); ++at, ++named)
        EXPECT_TRUE(tests.contains((*at)[1])) << (*at)[1];
    EXPECT_GT(named, 50);
}

} // namespace
