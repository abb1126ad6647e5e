// What docs/operating.md states about SSLKEYLOGFILE. A process reads the variable once, so the tests run in another.
#include "net/quic/server.h"
#include "tests/support/child.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

namespace
{

// The kinds of secrets that are in the file after some tests have run.
std::set<std::string> secretsOf(const std::string& tests, bool isAsked)
{
    const std::filesystem::path path = std::filesystem::path(test::getBuildFolder()) / ("keys_of_" + tests);
    std::filesystem::remove(path);
    std::vector<std::string> words = test::getStartWords("commonground_tests");
    words.insert(words.begin(), {"env", (isAsked ? "SSLKEYLOGFILE=" : "NOTHING=") + path.string()});
    words.push_back("--gtest_filter=" + tests);
    test::Child runner(words);
    runner.outputWith("no text of a test");
    EXPECT_EQ(runner.wait(), 0) << runner.output();
    std::set<std::string> kinds;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        kinds.insert(line.substr(0, line.find(' ')));
    file.close();
    std::filesystem::remove(path);
    return kinds;
}

TEST(TlsKeyLog, SecretsAreWrittenForTcpAndUdpWhereTheyAreAskedFor)
{
    for (const char* const tests : {"TlsSession.MessagesGoThroughTls", "UdpClient.ACommandArrivesAndIsAnswered"})
    {
        if (std::string_view(tests).starts_with("Udp") && !zet::UdpServer::isAvailable())
            continue;
        const auto kinds = secretsOf(tests, true);
        EXPECT_TRUE(kinds.contains("CLIENT_TRAFFIC_SECRET_0")) << tests;
        EXPECT_TRUE(kinds.contains("SERVER_TRAFFIC_SECRET_0")) << tests;
    }
    EXPECT_TRUE(secretsOf("TlsSession.MessagesGoThroughTls", false).empty());
}

} // namespace
