// wirelens send, serve, proxy and replay beside each other, over TCP of this machine.
#include "net/tcp/server.h"
#include "tests/support/captures.h"
#include "tests/support/loopback.h"
#include "tests/support/wirelens.h"
#include "tools/capture/capture_file.h"
#include "tools/frame_writer.h"
#include "tools/line_encoder.h"
#include "tools/object_json.h"

#include <nlohmann/json.hpp>

#include <signal.h>

#include <string>
#include <vector>

namespace
{

using Json = nlohmann::ordered_json;
using test::Child;
using test::portOf;
using test::startWirelens;

const char kEchoes[] = R"([{"class":"CCmdServerEcho","if":["m_Data >= 100"],"answers":[]},
 {"class":"CCmdServerEcho","answers":[{"class":"CCmdServerEchoReply","echo":["m_Data"]}]}])";

std::string echo(int data)
{
    return "{\"class\":\"CCmdServerEcho\",\"fields\":{\"m_Data\":" + std::to_string(data) + "}}\n";
}

// The JSON lines among the output.
std::vector<Json> linesOf(const std::string& output)
{
    std::vector<Json> lines;
    for (size_t at = 0; at < output.size();)
    {
        const size_t end = std::min(output.find('\n', at), output.size());
        const std::string line = output.substr(at, end - at);
        if (line.starts_with("{"))
            lines.push_back(Json::parse(line));
        at = end + 1;
    }
    return lines;
}

// A packet of a connection with this command.
std::string packetOf(const std::string& line)
{
    const auto encoded = std::make_unique<tools::EncodedLine>();
    EXPECT_EQ(tools::encodeLine(line, tools::TextWidth::k16, *encoded), "");
    std::string bytes;
    EXPECT_TRUE(tools::addPacket(bytes, encoded->m_Command));
    return bytes;
}

int stop(Child& child)
{
    EXPECT_TRUE(child.signal(SIGTERM));
    return child.wait();
}

// A server with the script in a file, and its port.
struct Served
{
    explicit Served(const std::string& script)
        : m_Script("script.json", script), m_Child(startWirelens({"serve", "--port", "0", m_Script.path()})),
          m_Target("127.0.0.1:" + portOf(*m_Child))
    {
    }

    test::TestFile m_Script;
    std::unique_ptr<Child> m_Child;
    std::string m_Target;
};

// The output of send with these arguments and this input.
struct Sent
{
    Sent(const std::vector<std::string>& arguments, const std::string& input)
    {
        std::vector<std::string> words = {"send"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const auto child = startWirelens(words);
        child->write(input);
        child->closeInput();
        m_Code = child->wait();
        m_Output = child->output();
    }

    int m_Code;
    std::string m_Output;
};

TEST(WirelensSend, EndsWhenTheExpectedAnswerHasArrived)
{
    Served served(kEchoes);
    const Sent sent({served.m_Target, "--expect", "CCmdServerEchoReply", "--timeout", "60"}, echo(42));
    EXPECT_EQ(sent.m_Code, 0) << sent.m_Output;
    const auto lines = linesOf(sent.m_Output);
    ASSERT_EQ(lines.size(), 1u) << sent.m_Output;
    EXPECT_EQ(lines[0]["class"], "CCmdServerEchoReply");
    EXPECT_EQ(lines[0]["fields"]["m_Data"], 42);
    EXPECT_EQ(stop(*served.m_Child), 0);
    const auto got = linesOf(served.m_Child->output());
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0]["class"], "CCmdServerEcho");
    EXPECT_TRUE(got[0]["connection"].get<std::string>().starts_with("127.0.0.1:"));
}

TEST(WirelensSend, ReadsLinesWhileAnswersArrive)
{
    Served served(kEchoes);
    const auto child = startWirelens({"send", served.m_Target, "--expect", "CCmdServerEchoReply", "--timeout", "60"});
    ASSERT_TRUE(child->write(echo(1)));
    // The first answer is printed while the input is open.
    EXPECT_NE(child->outputWith("\"m_Data\":1").find("\"m_Data\":1"), std::string::npos);
    ASSERT_TRUE(child->write(echo(2)));
    child->closeInput();
    EXPECT_EQ(child->wait(), 0);
}

TEST(WirelensSend, IsExitCodeOneIfTheExpectedAnswerDoesNotArrive)
{
    Served served(kEchoes);
    const Sent sent({served.m_Target, "--expect", "CCmdServerEchoReply", "--timeout", "3"}, echo(100));
    EXPECT_EQ(sent.m_Code, 1);
    EXPECT_NE(sent.m_Output.find("no CCmdServerEchoReply arrived in time"), std::string::npos) << sent.m_Output;
}

TEST(WirelensSend, ATimeoutOfNoTimeIsWrongUsage)
{
    Served served(kEchoes);
    for (const char* const none : {"0", "0.0001", "-1"})
    {
        const Sent sent({served.m_Target, "--expect", "CCmdServerEchoReply", "--timeout", none}, echo(1));
        EXPECT_EQ(sent.m_Code, 2) << none << ": " << sent.m_Output;
    }
}

TEST(WirelensSend, ABadLineIsReportedAndTheNextOneIsSent)
{
    Served served(kEchoes);
    const Sent sent({served.m_Target, "--expect", "CCmdServerEchoReply", "--timeout", "60"},
                    "{\"class\":\"CCmdServerEcho\",\"fields\":{\"m_Date\":1}}\n" + echo(2));
    EXPECT_EQ(sent.m_Code, 1);
    EXPECT_NE(sent.m_Output.find("line 1: CCmdServerEcho: m_Date is not a field"), std::string::npos) << sent.m_Output;
    EXPECT_EQ(linesOf(sent.m_Output).size(), 1u) << sent.m_Output;
}

TEST(WirelensSend, SaysWhyItIsNotConnected)
{
    const Sent sent({"127.0.0.1:" + std::to_string(test::findFreePort())}, echo(1));
    EXPECT_EQ(sent.m_Code, 1);
    EXPECT_NE(sent.m_Output.find("refused"), std::string::npos) << sent.m_Output;
}

TEST(WirelensServe, RefusesAScriptThatIsNotOne)
{
    const test::TestFile script("script.json", R"([{"class":"CCmdServerEcho"}])");
    const auto child = startWirelens({"serve", "--port", "0", script.path()});
    EXPECT_EQ(child->wait(), 1);
    EXPECT_NE(child->output().find("rule 1: it has no array of answers"), std::string::npos) << child->output();
}

// A server of the test behind a proxy, and a client before it. Both send and keep plain bytes.
class Bytes final : public zet::TcpServer
{
public:
    void onAccept() override
    {
        m_Accepted = zet::Unknown::Handle_T<zet::TcpConnection>(new zet::TcpConnection);
        if (accept(m_Accepted.get()))
            m_Accepted->start(getSystem());
    }

    zet::Unknown::Handle_T<zet::TcpConnection> m_Accepted;
};

void receive(zet::TcpConnection* connection, std::string& bytes)
{
    char piece[4096];
    for (int got = 1; connection && got > 0;)
    {
        got = connection->receive(piece, sizeof piece);
        bytes.append(piece, static_cast<size_t>(std::max(got, 0)));
    }
}

TEST(WirelensProxy, PassesAllBytesOnAndShowsTheCommandsAmongThem)
{
    zet::System system;
    const zet::Unknown::Handle_T<Bytes> server(new Bytes);
    server->setBindAddress(L"127.0.0.1");
    ASSERT_TRUE(server->start(&system) && server->listen(0, 5));
    const auto proxy = startWirelens({"proxy", "0", "127.0.0.1:" + std::to_string(server->getPort())});
    const std::string port = portOf(*proxy);
    ASSERT_FALSE(port.empty());
    const zet::Unknown::Handle_T<zet::TcpConnection> client(new zet::TcpConnection);
    ASSERT_TRUE(client->start(&system) &&
                client->connect(L"127.0.0.1", static_cast<unsigned short>(std::stoi(port)), false));

    std::string garbage(50, '\xEE');
    const std::string up = packetOf(echo(1)) + garbage + packetOf(echo(2));
    const std::string down = packetOf(R"({"class":"CCmdServerEchoReply","fields":{"m_Data":3}})");
    client->send(up.data(), static_cast<int>(up.size()));
    std::string atServer;
    std::string atClient;
    ASSERT_TRUE(test::tickUntil(system,
                                [&]
                                {
                                    receive(server->m_Accepted.get(), atServer);
                                    return atServer.size() >= up.size();
                                }));
    EXPECT_EQ(tools::hexOf(atServer.data(), atServer.size()), tools::hexOf(up.data(), up.size()));
    server->m_Accepted->send(down.data(), static_cast<int>(down.size()));
    ASSERT_TRUE(test::tickUntil(system,
                                [&]
                                {
                                    receive(client.get(), atClient);
                                    return atClient.size() >= down.size();
                                }));
    EXPECT_EQ(tools::hexOf(atClient.data(), atClient.size()), tools::hexOf(down.data(), down.size()));
    // The end of one connection is the end of the other.
    client->close();
    ASSERT_TRUE(test::tickUntil(system,
                                [&]
                                {
                                    receive(server->m_Accepted.get(), atServer);
                                    return server->m_Accepted->getConnectionState() > zet::TcpConnection::kEstablished;
                                }));
    EXPECT_EQ(atServer.size(), up.size());

    EXPECT_EQ(stop(*proxy), 0);
    std::vector<std::string> shown;
    for (const Json& line : linesOf(proxy->output()))
        shown.push_back(
            line["direction"].get<std::string>() + " " +
            (line.contains("notice") ? "skipped " + line["skipped"].dump() : line["fields"]["m_Data"].dump()));
    EXPECT_EQ(shown, (std::vector<std::string>{"to_server 1", "to_server skipped 50", "to_server 2", "to_client 3"}));
    server->m_Accepted->stop();
    client->stop();
}

// A capture in which a client asked for two echoes and got them.
std::string captured()
{
    test::capture::Conversation conversation;
    conversation.open();
    for (const int data : {5, 6})
    {
        conversation.send(true, packetOf(echo(data)));
        conversation.send(false, packetOf("{\"class\":\"CCmdServerEchoReply\",\"fields\":{\"m_Data\":" +
                                          std::to_string(data) + "}}"));
    }
    conversation.close();
    return test::capture::pcap(test::capture::kLinkTypeRaw, conversation.m_Packets);
}

struct Replayed
{
    Replayed(const std::string& script, const std::vector<std::string>& arguments)
    {
        Served served(script);
        const test::TestFile capture("capture.pcap", captured());
        std::vector<std::string> words = {"replay", capture.path(), served.m_Target};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const auto child = startWirelens(words);
        m_Code = child->wait();
        m_Output = child->output();
        stop(*served.m_Child);
        m_Got = linesOf(served.m_Child->output());
    }

    int m_Code;
    std::string m_Output;
    std::vector<Json> m_Got;
};

class WirelensReplay : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!tools::CaptureFile::isSupported())
            GTEST_SKIP() << "built without libpcap";
    }
};

TEST_F(WirelensReplay, EqualAnswersAreExitCodeZero)
{
    for (const char* const pace : {"--speed=2", "--fast"})
    {
        const Replayed replayed(kEchoes, {pace, "--timeout", "60"});
        EXPECT_EQ(replayed.m_Code, 0) << replayed.m_Output;
        ASSERT_EQ(replayed.m_Got.size(), 2u) << replayed.m_Output;
        EXPECT_EQ(replayed.m_Got[0]["fields"]["m_Data"], 5);
        EXPECT_EQ(replayed.m_Got[1]["fields"]["m_Data"], 6);
    }
}

TEST_F(WirelensReplay, EachFieldThatDiffersIsNamed)
{
    const char kOthers[] = R"([{"class":"CCmdServerEcho","if":["m_Data == 6"],"answers":[
      {"class":"CCmdServerEchoReply","echo":["m_Data"],"fields":{"m_ClientIndex":9}},
      {"class":"CCmdHostnameRequest"}]}])";
    const Replayed replayed(kOthers, {"--fast", "--timeout", "3"});
    EXPECT_EQ(replayed.m_Code, 1);
    // The only answer of its class is compared with the first one recorded.
    std::vector<std::string> fields;
    std::vector<std::string> errors;
    for (const Json& line : linesOf(replayed.m_Output))
        if (line.contains("field"))
            fields.push_back(line["field"].get<std::string>() + " " + line["recorded"].dump() + " " +
                             line["received"].dump());
        else
            errors.push_back(line["error"].get<std::string>());
    EXPECT_EQ(fields, (std::vector<std::string>{"m_ClientIndex 0 9", "m_Data 5 6"})) << replayed.m_Output;
    EXPECT_EQ(errors, (std::vector<std::string>{"the recording has no such answer", "the answer did not arrive"}))
        << replayed.m_Output;
}

TEST_F(WirelensReplay, AnIgnoredFieldIsNotCompared)
{
    const char kOthers[] =
        R"([{"class":"CCmdServerEcho","answers":[{"class":"CCmdServerEchoReply","fields":{"m_Data":1}}]}])";
    EXPECT_EQ(Replayed(kOthers, {"--fast", "--timeout", "60", "--ignore", "m_Data"}).m_Code, 0);
    EXPECT_EQ(Replayed(kOthers, {"--fast", "--timeout", "60", "--ignore", "m_Date"}).m_Code, 1);
}

} // namespace
