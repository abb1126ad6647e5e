// wirelens send and serve by TLS.
#include "tests/support/tls_certificates.h"
#include "tests/support/wirelens.h"

#include <signal.h>

namespace
{

using test::startWirelens;

const char kScript[] = R"([{"class":"CCmdServerEcho","answers":[{"class":"CCmdServerEchoReply","echo":["m_Data"]}]}])";
const char kEcho[] = "{\"class\":\"CCmdServerEcho\",\"fields\":{\"m_Data\":42}}\n";

TEST(WirelensTls, SendVerifiesTheCertificateOfTheServer)
{
    const test::Authority authority("the authority");
    const test::Authority stranger("another one");
    const test::Certificate issued = authority.issue({"localhost", {"localhost", "127.0.0.1"}});
    const test::TestFile certificate("server.pem", issued.m_Chain);
    const test::TestFile key("server.key", issued.m_Key);
    const test::TestFile trusted("authority.pem", authority.pem());
    const test::TestFile other("stranger.pem", stranger.pem());
    const test::TestFile script("script.json", kScript);
    const auto server = startWirelens(
        {"serve", "--port", "0", "--certificate", certificate.path(), "--key", key.path(), script.path()});
    const std::string target = "127.0.0.1:" + test::portOf(*server);

    const auto sent = [&](const std::vector<std::string>& arguments)
    {
        std::vector<std::string> words = {"send",      target, "--tls", "--expect", "CCmdServerEchoReply",
                                          "--timeout", "60"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const auto client = startWirelens(words);
        client->write(kEcho);
        client->closeInput();
        const int code = client->wait();
        return std::to_string(code) + " " + client->output();
    };
    const std::string right = sent({"--trust", trusted.path()});
    EXPECT_TRUE(right.starts_with("0 ")) << right;
    EXPECT_NE(right.find("\"m_Data\":42"), std::string::npos) << right;
    const std::string wrong = sent({"--trust", other.path()});
    EXPECT_TRUE(wrong.starts_with("1 ")) << wrong;
    const std::string named = sent({"--trust", trusted.path(), "--server-name", "elsewhere.example"});
    EXPECT_TRUE(named.starts_with("1 ")) << named;
    const std::string missing = sent({"--trust", trusted.path() + ".missing"});
    EXPECT_TRUE(missing.starts_with("1 ")) << missing;

    server->signal(SIGTERM);
    EXPECT_EQ(server->wait(), 0);
}

TEST(WirelensTls, OptionsOfTlsNeedTls)
{
    const auto client = startWirelens({"send", "127.0.0.1:1", "--trust", "file"});
    EXPECT_EQ(client->wait(), 2);
}

} // namespace
