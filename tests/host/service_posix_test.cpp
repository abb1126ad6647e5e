// A service as a process of its own, ended by real signals.
#include "commands/registry.h"
#include "host/handlers.h"
#include "tests/support/child.h"
#include "tests/support/log_folder.h"
#include "tests/support/loopback.h"
#include "tests/support/notify_listener.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>

#include <signal.h>

namespace
{

using test::tickUntil;

// The program tested_service, with log files in a folder of its own.
class Process
{
public:
    explicit Process(const std::vector<std::string>& options = {}, const std::vector<std::string>& variables = {})
        : m_Child(words(options), variables)
    {
        // On its own line, and the line is complete.
        static const std::regex pattern(R"(port (\d+)\.)");
        const std::string& output = m_Child.outputWith("port ");
        std::smatch match;
        if (std::regex_search(m_Child.outputWith(".\n"), match, pattern) || std::regex_search(output, match, pattern))
            m_Port = static_cast<unsigned short>(std::atoi(match[1].str().c_str()));
    }

    std::vector<std::string> words(const std::vector<std::string>& options) const
    {
        std::vector<std::string> all = test::getStartWords("tested_service");
        all.insert(all.end(), {"--log-folder", m_Folder.m_Path.string() + "/"});
        all.insert(all.end(), options.begin(), options.end());
        return all;
    }

    test::LogFolder m_Folder;
    test::Child m_Child;
    unsigned short m_Port = 0;
};

// Clients of a process in one System. Each counts the questions that it has sent and the answers that it got.
struct Clients
{
    Clients()
    {
        m_System.init();
        m_Handlers.on<CCmdServerEchoReply>(
            [this](CCommandSocket& socket, const CCmdServerEchoReply& reply)
            {
                ++m_Answered[&socket];
                if (reply.m_Data < 1000)
                    ask(socket, reply.m_Data);
            });
    }
    ~Clients()
    {
        for (const auto& client : m_Clients)
            client->close();
        m_System.exit();
    }
    CCommandSocket& connect(unsigned short port)
    {
        const test::ClientHandle client(new test::Client(m_Analyser.get()));
        m_Clients.push_back(client);
        EXPECT_TRUE(client->start(&m_System) && client->connect(L"127.0.0.1", port, false));
        EXPECT_TRUE(tickUntil(m_System, [&] { return isUp(*client); }));
        return *client;
    }
    void ask(CCommandSocket& socket, unsigned long data)
    {
        CCmdServerEcho echo;
        echo.m_Data = data;
        m_Asked[&socket] += socket.send(echo);
    }
    static bool isUp(const CCommandSocket& socket)
    {
        return socket.getConnectionState() == zet::TcpConnection::kEstablished;
    }
    // Whether the process holds that many questions.
    bool areHeld(Process& process, int count)
    {
        const std::string line = "held " + std::to_string(count) + "\n";
        return tickUntil(m_System, [&] { return process.m_Child.output().find(line) != std::string::npos; });
    }
    int countUp() const
    {
        int count = 0;
        for (const auto& client : m_Clients)
            count += isUp(*client);
        return count;
    }

    zet::System m_System;
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    std::vector<test::ClientHandle> m_Clients;
    std::map<const CCommandSocket*, int> m_Asked;
    std::map<const CCommandSocket*, int> m_Answered;
};

constexpr int kHolding = 5;
constexpr int kHeld = 8;
constexpr int kLoading = 20;

// Under load: clients that ask on with each answer, and clients whose questions the service answers only while it
// drains.
TEST(ServiceProcess, SigtermUnderLoadAnswersEverythingAndEndsWithZero)
{
    Process process({"--drain-time", "60000"});
    ASSERT_NE(process.m_Port, 0) << process.m_Child.output();
    Clients clients;
    std::vector<CCommandSocket*> holding;
    for (int i = 0; i < kHolding; ++i)
    {
        holding.push_back(&clients.connect(process.m_Port));
        for (int j = 0; j < kHeld; ++j)
            clients.ask(*holding.back(), 1000);
    }
    std::vector<CCommandSocket*> loading;
    for (int i = 0; i < kLoading; ++i)
    {
        loading.push_back(&clients.connect(process.m_Port));
        clients.ask(*loading.back(), 1);
    }
    const auto isLoaded = [&]
    {
        int least = 1000;
        for (const CCommandSocket* const each : loading)
            least = std::min(least, clients.m_Answered[each]);
        return least >= 20;
    };
    ASSERT_TRUE(tickUntil(clients.m_System, isLoaded));
    ASSERT_TRUE(clients.areHeld(process, kHolding * kHeld));

    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    ASSERT_TRUE(tickUntil(clients.m_System, [&] { return clients.countUp() == 0; }));
    for (const CCommandSocket* const each : holding)
        EXPECT_EQ(clients.m_Answered[each], kHeld);
    // The last question may have crossed the end of the connection.
    for (const CCommandSocket* const each : loading)
        EXPECT_LE(clients.m_Asked[each] - clients.m_Answered[each], 1);
    for (const auto& client : clients.m_Clients)
        EXPECT_EQ(client->getConnectionState(), zet::TcpConnection::kDown) << "no orderly end";
    EXPECT_EQ(process.m_Child.wait(), 0);
    const std::string& output = process.m_Child.output();
    EXPECT_NE(output.find("Draining for at most 60000 ms"), std::string::npos) << output;
    EXPECT_EQ(output.find("[W]"), std::string::npos) << output;
    EXPECT_EQ(output.find("[E]"), std::string::npos) << output;
}

TEST(ServiceProcess, NoConnectionIsAcceptedDuringTheDrain)
{
    Process process({"--drain-time", "60000"});
    ASSERT_NE(process.m_Port, 0);
    Clients clients;
    CCommandSocket& open = clients.connect(process.m_Port);
    clients.ask(open, 2000);
    ASSERT_TRUE(clients.areHeld(process, 1));
    ASSERT_TRUE(process.m_Child.signal(SIGINT));
    process.m_Child.outputWith("Draining");
    ASSERT_TRUE(tickUntil(clients.m_System, [&] { return !test::isListening(process.m_Port); }));
    // The open connection is still served.
    EXPECT_TRUE(clients.isUp(open));
    clients.ask(open, 5);
    EXPECT_TRUE(tickUntil(clients.m_System, [&] { return clients.m_Answered[&open] > 0; }));
}

TEST(ServiceProcess, SecondSignalEndsItAtOnceWithACodeOfItsOwn)
{
    Process process({"--drain-time", "3600000"});
    ASSERT_NE(process.m_Port, 0);
    Clients clients;
    clients.ask(clients.connect(process.m_Port), 2000);
    ASSERT_TRUE(clients.areHeld(process, 1));
    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    process.m_Child.outputWith("Draining");
    ASSERT_TRUE(process.m_Child.signal(SIGINT));
    EXPECT_EQ(process.m_Child.wait(), 3);
}

TEST(ServiceProcess, DrainTimeEndsAServiceWithOpenAnswers)
{
    Process process({"--drain-time", "1"});
    ASSERT_NE(process.m_Port, 0);
    Clients clients;
    clients.ask(clients.connect(process.m_Port), 2000);
    ASSERT_TRUE(clients.areHeld(process, 1));
    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    const std::string& output = process.m_Child.outputWith("closed as they are");
    EXPECT_NE(output.find("[W] The drain time is over: 1 connections are closed as they are"), std::string::npos)
        << output;
    EXPECT_EQ(process.m_Child.wait(), 0);
}

TEST(ServiceProcess, SighupReopensTheLogFile)
{
    Process process;
    ASSERT_NE(process.m_Port, 0);
    const auto& folder = process.m_Folder.m_Path;
    // The file has the line that the console has, or gets it after the console.
    const auto fileOf = [&](const std::string& text)
    {
        for (int i = 0; i < 2; ++i)
            for (const auto& entry : std::filesystem::directory_iterator(folder))
            {
                std::ifstream file(entry.path(), std::ios::binary);
                const std::string content{std::istreambuf_iterator<char>(file), {}};
                if (content.find(text) != std::string::npos)
                    return entry.path();
            }
        return std::filesystem::path();
    };
    Clients clients;
    ASSERT_TRUE(tickUntil(clients.m_System, [&] { return !fileOf("port ").empty(); }));
    const auto first = fileOf("port ");
    std::filesystem::rename(first, folder / "rotated");
    ASSERT_TRUE(process.m_Child.signal(SIGHUP));
    process.m_Child.outputWith("Reloaded");
    ASSERT_TRUE(tickUntil(clients.m_System, [&] { return !fileOf("Reloaded").empty(); }));
    EXPECT_EQ(fileOf("Reloaded"), first);
    EXPECT_EQ(fileOf("port "), folder / "rotated");
    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    EXPECT_EQ(process.m_Child.wait(), 0);
}

TEST(ServiceProcess, ReloadThatFailsLeavesTheServiceRunning)
{
    Process process({"--fail-to-reload"});
    ASSERT_NE(process.m_Port, 0);
    ASSERT_TRUE(process.m_Child.signal(SIGHUP));
    const std::string& output = process.m_Child.outputWith("stay as they were");
    EXPECT_NE(output.find("[E] Reloaded, but 1 of 2 parts stay as they were"), std::string::npos) << output;
    Clients clients;
    CCommandSocket& open = clients.connect(process.m_Port);
    clients.ask(open, 5);
    EXPECT_TRUE(tickUntil(clients.m_System, [&] { return clients.m_Answered[&open] > 0; }));
}

TEST(ServiceProcess, ServiceManagerGetsEachState)
{
    test::NotifyListener manager;
    ASSERT_FALSE(manager.name().empty());
    Process process({}, {"NOTIFY_SOCKET=" + manager.name()});
    ASSERT_NE(process.m_Port, 0);
    EXPECT_EQ(manager.next(), "READY=1");
    ASSERT_TRUE(process.m_Child.signal(SIGHUP));
    EXPECT_TRUE(std::regex_match(manager.next(), std::regex("RELOADING=1\nMONOTONIC_USEC=[0-9]+")));
    EXPECT_EQ(manager.next(), "READY=1");
    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    EXPECT_EQ(manager.next(), "STOPPING=1");
    EXPECT_EQ(process.m_Child.wait(), 0);
}

TEST(ServiceProcess, WatchdogOfTheManagerIsFedByTicks)
{
    test::NotifyListener manager;
    Process process({}, {"NOTIFY_SOCKET=" + manager.name(), "WATCHDOG_USEC=20000"});
    ASSERT_NE(process.m_Port, 0);
    int fed = 0;
    for (int i = 0; i < 4; ++i)
        fed += manager.next() == "WATCHDOG=1";
    // One of the four is READY=1.
    EXPECT_EQ(fed, 3);
}

TEST(ServiceProcess, WatchdogOfAnotherProcessIsNotFed)
{
    test::NotifyListener manager;
    Process process({}, {"NOTIFY_SOCKET=" + manager.name(), "WATCHDOG_USEC=2", "WATCHDOG_PID=1"});
    ASSERT_NE(process.m_Port, 0);
    EXPECT_EQ(manager.next(), "READY=1");
    ASSERT_TRUE(process.m_Child.signal(SIGTERM));
    EXPECT_EQ(manager.next(), "STOPPING=1");
    EXPECT_EQ(process.m_Child.wait(), 0);
}

TEST(ServiceProcess, StartThatFailsEndsWithOne)
{
    Process process({"--fail-at-start"});
    EXPECT_EQ(process.m_Child.wait(), 1);
    EXPECT_NE(process.m_Child.output().find("[E] The service under_test cannot start"), std::string::npos);
}

} // namespace
