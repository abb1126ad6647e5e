// A recording of command sockets, read back and decoded: every frame and field, lives, sizes, counters.
#include "host/recording.h"

#include "commands/login.h"
#include "tests/host/conversation.h"
#include "tests/support/log_folder.h"
#include "tests/support/recorded.h"
#include "tools/object_json.h"

#include <gtest/gtest.h>

namespace
{

using Json = nlohmann::ordered_json;
using test::ClientHandle;
using test::RecordedFile;
using test::RecordedLines;

class RecordingTest : public testing::Test
{
protected:
    RecordingTest()
    {
        m_Talk.m_ServerHandlers.on<CCmdLogin>(
            [this](CCommandSocket& socket, CCmdLogin& login)
            {
                ++m_Logins;
                CCmdLoginFail fail;
                fail.m_Text1 = L"no account";
                fail.m_Value1 = login.m_Text1.getLength();
                socket.send(fail);
            });
        m_Talk.m_ClientHandlers.on<CCmdLoginFail>([this](CCommandSocket&, CCmdLoginFail&) { ++m_Fails; });
    }

    bool start() { return m_Recording.start(m_Talk.m_Loopback.m_System, path().generic_wstring().c_str()); }
    std::filesystem::path path(int number = 0) const
    {
        return m_Folder.m_Path / ("zone.pcapng" + (number == 0 ? "" : "." + std::to_string(number)));
    }
    bool tickUntil(const std::function<bool()>& condition) { return m_Talk.tickUntil(condition); }
    // Questions to the server with these numbers, received by it.
    void ask(CCommandSocket& client, CCommandSocket& end, unsigned long first, unsigned long count)
    {
        const size_t before = m_Talk.m_Asked[&end].size();
        for (unsigned long i = 0; i < count; ++i)
            ASSERT_TRUE(client.send(test::echoOf(first + i)));
        ASSERT_TRUE(m_Talk.wasAsked(end, before + count));
    }
    // The numbers asked in a file.
    static std::vector<unsigned long> numbers(const RecordedLines& lines)
    {
        std::vector<unsigned long> all;
        for (const Json& line : lines.m_Lines)
            if (line["class"] == "CCmdServerEcho")
                all.push_back(line["fields"]["m_Data"]);
        return all;
    }
    static std::vector<unsigned long> range(unsigned long first, unsigned long end)
    {
        std::vector<unsigned long> all;
        while (first < end)
            all.push_back(first++);
        return all;
    }

    test::LogFolder m_Folder;
    test::Conversation m_Talk;
    host::Recording m_Recording;
    int m_Logins = 0;
    int m_Fails = 0;
};

TEST_F(RecordingTest, EveryFrameDecodesToTheFieldsThatWereSent)
{
    ASSERT_TRUE(start());
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    std::vector<Json> sent;
    CCmdServerEcho echo;
    echo.m_Data = 77;
    echo.m_AccountName = L"\x4E2D\x6587 name";
    echo.SetAddress({1, 2, 3, {}}, {4, 5, 6, {}});
    for (int i = 0; i < 3; ++i)
    {
        echo.m_Data += 1;
        ASSERT_TRUE(client->send(echo));
        sent.push_back(tools::objectJson(CCmdServerEcho::Wire(), &echo));
    }
    CCommandSocket& end = m_Talk.accepted();
    ASSERT_TRUE(m_Talk.wasAsked(end, 3));
    std::vector<Json> answered;
    for (int i = 0; i < 3; ++i)
    {
        CCmdServerEchoReply reply;
        reply.m_Data = m_Talk.m_Asked[&end].front();
        m_Talk.answer(end);
        answered.push_back(tools::objectJson(CCmdServerEchoReply::Wire(), &reply));
    }
    const unsigned short port = m_Talk.m_Loopback.m_Server->getPort();
    client->close();
    ASSERT_TRUE(tickUntil([&] { return end.isInvalid(); }));
    m_Recording.stop();

    const RecordedFile file(path());
    ASSERT_EQ(file.m_Fault, "");
    const RecordedLines lines(file);
    const auto withoutIndex = [](std::vector<Json> all)
    {
        // A sender leaves it unset.
        for (Json& each : all)
            each.erase("m_ClientIndex");
        return all;
    };
    EXPECT_EQ(withoutIndex(lines.fields("to_server")), withoutIndex(sent));
    EXPECT_EQ(withoutIndex(lines.fields("to_client")), withoutIndex(answered));
    ASSERT_FALSE(lines.m_Lines.empty());
    EXPECT_EQ(lines.m_Lines[0]["from"], tools::hexOf(&echo.GetFromAddress(), 16));
    EXPECT_TRUE(lines.m_Notices.empty());
    EXPECT_EQ(lines.m_Totals.m_LostBytes + lines.m_Totals.m_SkippedBytes + lines.m_Totals.m_BadPackets, 0u);
    const std::string connection = lines.m_Lines[0]["connection"];
    EXPECT_TRUE(connection.starts_with("127.0.0.1:"));
    EXPECT_TRUE(connection.ends_with("-127.0.0.1:" + std::to_string(port))) << connection;
    // Both ends are in this process: three questions sent and received.
    EXPECT_GE(m_Recording.getPackets(), 6u);
    EXPECT_EQ(file.m_Received, static_cast<long long>(m_Recording.getPackets()));
    EXPECT_EQ(file.m_Dropped, 0);
}

TEST_F(RecordingTest, CommentsTellTheLifeOfAConnection)
{
    ASSERT_TRUE(start());
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    const std::string serverPort = std::to_string(m_Talk.m_Loopback.m_Server->getPort());
    m_Talk.advance(20);
    client->close();
    CCommandSocket& end = m_Talk.accepted();
    ASSERT_TRUE(tickUntil([&] { return end.isInvalid(); }));
    m_Recording.stop();
    const RecordedFile file(path());
    ASSERT_EQ(file.m_Fault, "");
    const std::vector<std::string> comments = file.comments();
    const auto has = [&](const std::string& what)
    {
        return std::count_if(comments.begin(), comments.end(),
                             [&](const std::string& each) { return each.find(what) == 0; });
    };
    EXPECT_EQ(has("connected to 127.0.0.1:" + serverPort), 1);
    EXPECT_EQ(has("accepted from 127.0.0.1:"), 1);
    EXPECT_EQ(has("ended: "), 2);
    EXPECT_EQ(comments.size(), 4u);
    EXPECT_EQ(has("ended: closed here"), 1);
    EXPECT_EQ(has("ended: closed by the peer"), 1);
}

TEST_F(RecordingTest, NothingIsRecordedBeforeStartAndAfterStop)
{
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    CCommandSocket& end = m_Talk.accepted();
    ask(*client, end, 1, 2);
    EXPECT_FALSE(m_Recording.isOn());
    ASSERT_TRUE(start());
    EXPECT_TRUE(m_Recording.isOn());
    ask(*client, end, 10, 3);
    m_Recording.stop();
    EXPECT_FALSE(m_Recording.isOn());
    ask(*client, end, 20, 2);
    ASSERT_TRUE(start());
    ask(*client, end, 30, 2);
    m_Recording.stop();

    const RecordedFile first(path(1));
    const RecordedFile second(path());
    ASSERT_EQ(first.m_Fault + second.m_Fault, "");
    EXPECT_EQ(numbers(RecordedLines(first)), range(10, 13));
    EXPECT_EQ(numbers(RecordedLines(second)), range(30, 32));
    ASSERT_FALSE(first.comments().empty());
    EXPECT_TRUE(first.comments()[0].starts_with("open when the recording began: connected to ")) << first.comments()[0];
    EXPECT_TRUE(RecordedLines(first).m_Notices.empty());
}

TEST_F(RecordingTest, SecretsAreMaskedAndTheOthersAsTheyWere)
{
    ASSERT_TRUE(start());
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    CCmdLogin login;
    login.m_AccountName = L"carla";
    login.m_Text1 = L"carla";
    login.m_Text2 = L"pass\x00E9 word";
    ASSERT_TRUE(client->send(login));
    ASSERT_TRUE(tickUntil([&] { return m_Fails == 1; }));
    m_Recording.stop();
    const RecordedFile file(path());
    ASSERT_EQ(file.m_Fault, "");
    const RecordedLines lines(file);
    ASSERT_EQ(lines.m_Lines.size(), 2u);
    const Json& fields = lines.m_Lines[0]["fields"];
    EXPECT_FALSE(lines.m_Lines[0].contains("error"));
    EXPECT_EQ(fields["m_AccountName"], "carla");
    EXPECT_EQ(fields["m_Text1"], "*****");
    EXPECT_EQ(fields["m_Text2"], "**********");
    EXPECT_EQ(fields["m_Text3"], "");
    // The server has read what the client sent.
    EXPECT_EQ(lines.m_Lines[1]["fields"]["m_Text1"], "no account");
    EXPECT_EQ(lines.m_Lines[1]["fields"]["m_Value1"], 5);
    const std::vector<std::string> comments = file.comments();
    EXPECT_EQ(std::count(comments.begin(), comments.end(), "secrets are masked"), 2);
    std::string all;
    for (const auto& packet : file.m_Packets)
        all += packet.m_Bytes;
    EXPECT_EQ(all.find(std::string("p\0a\0s\0s", 7)), std::string::npos);
}

TEST_F(RecordingTest, EachFileIsBoundedAndReadableAlone)
{
    m_Recording.setLimits(1, 3);
    ASSERT_TRUE(start());
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    CCommandSocket& end = m_Talk.accepted();
    constexpr unsigned long kAsked = 1500;
    for (unsigned long first = 0; first < kAsked; first += 100)
        ask(*client, end, first, 100);
    m_Recording.stop();

    EXPECT_FALSE(std::filesystem::exists(path(3)));
    std::vector<unsigned long> all;
    for (int number = 2; number >= 0; --number)
    {
        const RecordedFile file(path(number));
        ASSERT_EQ(file.m_Fault, "") << number;
        EXPECT_LE(file.m_Size, static_cast<size_t>(host::Recording::kLeastFileSize)) << number;
        EXPECT_GT(file.m_Size, 1000u) << number;
        EXPECT_GE(file.m_Received, 0) << number;
        const RecordedLines lines(file);
        EXPECT_TRUE(lines.m_Notices.empty()) << number << lines.m_Notices[0].m_What;
        EXPECT_TRUE(file.comments().empty() || file.comments()[0].starts_with("continues from an earlier file: "));
        for (const unsigned long each : numbers(lines))
            if (all.empty() || each > all.back())
                all.push_back(each);
    }
    // The last ones, without a gap.
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all, range(all.front(), kAsked));
    EXPECT_GT(all.size(), 200u);
}

TEST_F(RecordingTest, APacketAboveHalfAFileIsDroppedAndCounted)
{
    m_Recording.setLimits(1, 2);
    ASSERT_TRUE(start());
    const ClientHandle client = m_Talk.connect();
    ASSERT_TRUE(client);
    CCommandSocket& end = m_Talk.accepted();
    ask(*client, end, 1, 1);
    ASSERT_TRUE(client->send(test::NoteCommand(1, 40000)));
    ask(*client, end, 2, 2);
    m_Recording.stop();
    EXPECT_EQ(m_Recording.getDropped(), 2u);
    const RecordedFile file(path());
    ASSERT_EQ(file.m_Fault, "");
    EXPECT_EQ(file.m_Dropped, 2);
    const RecordedLines lines(file);
    EXPECT_EQ(numbers(lines), range(1, 4));
    ASSERT_EQ(lines.m_Notices.size(), 1u);
    EXPECT_TRUE(lines.m_Notices[0].m_What.starts_with("a gap of 400")) << lines.m_Notices[0].m_What;
}

TEST_F(RecordingTest, AThreadHasOneAndAFileThatCannotBeMadeIsRefused)
{
    ASSERT_TRUE(start());
    host::Recording second;
    EXPECT_FALSE(second.start(m_Talk.m_Loopback.m_System, (m_Folder.m_Path / "other").generic_wstring().c_str()));
    EXPECT_FALSE(second.isOn());
    EXPECT_TRUE(start()) << "it runs";
    m_Recording.stop();
    EXPECT_FALSE(
        second.start(m_Talk.m_Loopback.m_System, (m_Folder.m_Path / "no" / "other").generic_wstring().c_str()));
    EXPECT_TRUE(second.start(m_Talk.m_Loopback.m_System, (m_Folder.m_Path / "other").generic_wstring().c_str()));
    int refused = 0;
    for (const std::wstring& line : m_Talk.m_Lines.texts())
        refused += line.find(L"cannot start") != std::wstring::npos;
    EXPECT_EQ(refused, 2);
}

// What is sent while connecting is recorded once the connection is established.
TEST_F(RecordingTest, CommandsSentWhileConnectingFollowTheBeginning)
{
    ASSERT_TRUE(start());
    const ClientHandle client(new test::Client(m_Talk.m_ClientAnalyser.get()));
    ASSERT_TRUE(client->start(&m_Talk.m_Loopback.m_System));
    ASSERT_TRUE(client->connect(L"localhost", m_Talk.m_Loopback.m_Server->getPort(), false));
    ASSERT_EQ(client->getConnectionState(), zet::TcpConnection::kConnecting);
    ASSERT_TRUE(client->send(test::echoOf(5)));
    ASSERT_TRUE(tickUntil([&] { return !m_Talk.m_Loopback.m_Server->m_Accepted.empty(); }));
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    client->close();
    m_Recording.stop();
    const RecordedFile file(path());
    ASSERT_EQ(file.m_Fault, "");
    EXPECT_EQ(numbers(RecordedLines(file)), range(5, 6));
    ASSERT_FALSE(file.comments().empty());
    EXPECT_TRUE(file.comments()[0].starts_with("connected to ") || file.comments()[0].starts_with("accepted from "));
}

} // namespace
