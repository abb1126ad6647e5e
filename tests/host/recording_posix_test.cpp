// Recordings that meet a full disk, start and stop by signals, and are read by Wireshark's programs.
#include "host/recording.h"

#include "commands/registry.h"
#include "tests/host/conversation.h"
#include "tests/host/service_steps.h"
#include "tests/support/log_folder.h"
#include "tests/support/proxy_client.h"
#include "tests/support/recorded.h"
#include "tests/support/socks_server.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <signal.h>
#include <sys/resource.h>

namespace
{

// No file of this process grows beyond the limit meanwhile: a write fails, as on a full disk.
class FileLimit
{
public:
    explicit FileLimit(rlim_t bytes) : m_Handler(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_Old);
        rlimit limited = m_Old;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_Old);
        signal(SIGXFSZ, m_Handler);
    }
    FileLimit(const FileLimit&) = delete;
    FileLimit& operator=(const FileLimit&) = delete;

private:
    rlimit m_Old{};
    void (*m_Handler)(int);
};

TEST(RecordingFailure, AFullDiskEndsTheRecordingWithOneLineAndLeavesTheHostAlone)
{
    const test::LogFolder folder;
    test::Conversation talk;
    const auto client = talk.connect();
    ASSERT_TRUE(client);
    CCommandSocket& end = talk.accepted();
    host::Recording recording;
    {
        const FileLimit limit(8192);
        ASSERT_TRUE(
            recording.start(talk.m_Loopback.m_System, (folder.m_Path / "full.pcapng").generic_wstring().c_str()));
        for (unsigned long i = 0; i < 200; ++i)
            ASSERT_TRUE(client->send(test::echoOf(i)));
        ASSERT_TRUE(talk.wasAsked(end, 200));
        EXPECT_FALSE(recording.isOn());
    }
    int lines = 0;
    for (const std::wstring& line : talk.m_Lines.texts())
        lines += line.find(L"full.pcapng ended after ") != std::wstring::npos;
    EXPECT_EQ(lines, 1);
    // The connection goes on, and a further recording works.
    ASSERT_TRUE(recording.start(talk.m_Loopback.m_System, (folder.m_Path / "next.pcapng").generic_wstring().c_str()));
    talk.answer(end);
    ASSERT_TRUE(client->send(test::echoOf(1)));
    ASSERT_TRUE(talk.wasAsked(end, 200));
    recording.stop();
    EXPECT_EQ(test::RecordedFile(folder.m_Path / "next.pcapng").m_Fault, "");
}

TEST(ServiceRecording, SignalsStartAndStopIt)
{
    const test::LogFolder folder;
    host::Service service(L"zone", "");
    test::ServiceSteps steps(service);
    const auto path = folder.m_Path / "asked.pcapng";
    steps.add(
        []
        {
            raise(SIGUSR2);
            return true;
        });
    steps.add(
        [&]
        {
            EXPECT_FALSE(service.getRecording().isOn());
            raise(SIGUSR1);
            return true;
        });
    steps.add([&] { return service.getRecording().isOn(); });
    steps.add(
        [&]
        {
            raise(SIGUSR2);
            return true;
        });
    steps.add([&] { return !service.getRecording().isOn(); });
    steps.add(
        [&]
        {
            raise(SIGUSR1);
            service.beginDrain();
            return true;
        });
    std::string name = "program";
    std::string option = "--record=" + path.string();
    std::string size = "--record-size=1";
    char* words[] = {name.data(), option.data(), size.data()};
    // The option starts it at once; the first step stops it.
    EXPECT_EQ(service.run(3, words), 0);
    steps.stop();
    EXPECT_TRUE(steps.areDone());
    EXPECT_EQ(test::RecordedFile(path).m_Fault, "");
    EXPECT_EQ(test::RecordedFile(folder.m_Path / "asked.pcapng.1").m_Fault, "");
}

TEST(ServiceRecording, AFileThatCannotBeMadeKeepsTheServiceFromStarting)
{
    const test::LogFolder folder;
    host::Service service(L"zone", "");
    test::ServiceSteps steps(service);
    std::string name = "program";
    std::string option = "--record=" + (folder.m_Path / "no" / "file").string();
    char* words[] = {name.data(), option.data()};
    EXPECT_EQ(service.run(2, words), host::kExitFailed);
    steps.stop();
}

TEST(ServiceRecording, AFileThatCannotBeRenamedIsNotContinuedWithoutBound)
{
    const test::LogFolder folder;
    const std::filesystem::path path = folder.m_Path / "zone.pcapng";
    std::filesystem::create_directories(folder.m_Path / "zone.pcapng.1" / "full");
    std::ofstream(path) << "an earlier file";
    zet::System system;
    system.init();
    host::Recording recording;
    EXPECT_FALSE(recording.start(system, path.generic_wstring().c_str()));
    EXPECT_EQ(std::filesystem::file_size(path), 15U);
    std::filesystem::remove_all(folder.m_Path / "zone.pcapng.1");
    EXPECT_TRUE(recording.start(system, path.generic_wstring().c_str()));
}

TEST(RecordingThroughAProxy, HasTheCommandsWithoutTheProxysBytes)
{
    const test::LogFolder folder;
    test::NoteAnalyser serverAnalyser([](CCommandSocket* socket, const test::NoteCommand& note)
                                      { socket->send(test::NoteCommand(note.m_Number + 1)); });
    int answers = 0;
    test::NoteAnalyser analyser([&](CCommandSocket*, const test::NoteCommand&) { ++answers; });
    test::Loopback net(serverAnalyser);
    test::SocksServer proxy(net.m_System, {});
    if (!proxy.isUp())
        GTEST_SKIP() << proxy.reason();
    const test::ProxyClientHandle client(new test::ProxyClient(analyser));
    host::Recording recording;
    ASSERT_TRUE(recording.start(net.m_System, (folder.m_Path / "proxy.pcapng").generic_wstring().c_str()));
    client->start(&net.m_System);
    client->SetProxy(L"127.0.0.1", proxy.port(), L"", L"");
    ASSERT_TRUE(client->connect(L"127.0.0.1", net.m_Server->getPort(), true));
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return client->m_Workings == 1; }));
    ASSERT_TRUE(client->send(test::NoteCommand(7)));
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return answers == 1; }));
    client->close();
    recording.stop();
    const test::RecordedFile file(folder.m_Path / "proxy.pcapng");
    ASSERT_EQ(file.m_Fault, "");
    const test::RecordedLines lines(file);
    EXPECT_TRUE(lines.m_Notices.empty());
    const std::string toProxy = ":" + std::to_string(proxy.port());
    int through = 0;
    for (const auto& line : lines.m_Lines)
        if (line["connection"].get<std::string>().ends_with(toProxy))
        {
            EXPECT_EQ(line["id"], "0x0123");
            ++through;
        }
    EXPECT_EQ(through, 2);
}

bool hasProgram(const std::string& name)
{
    return std::system((name + " --version > /dev/null 2>&1").c_str()) == 0;
}

std::string outputOf(const std::string& command)
{
    std::string output;
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    char piece[4096];
    while (const size_t got = std::fread(piece, 1, sizeof piece, pipe))
        output.append(piece, got);
    EXPECT_EQ(pclose(pipe), 0) << output;
    return output;
}

TEST(RecordingForWireshark, ItsProgramsReadPacketsCommentsAndCounters)
{
    if (!COMMONGROUND_OTHER_PROGRAMS)
        GTEST_SKIP() << "this build does not start the programs of others";
    if (!hasProgram("tshark") || !hasProgram("capinfos"))
        GTEST_SKIP() << "needs tshark and capinfos";
    const test::LogFolder folder;
    const std::string path = (folder.m_Path / "zone.pcapng").string();
    test::Conversation talk;
    host::Recording recording;
    ASSERT_TRUE(recording.start(talk.m_Loopback.m_System, (folder.m_Path / "zone.pcapng").generic_wstring().c_str()));
    const auto client = talk.connect();
    ASSERT_TRUE(client);
    ASSERT_TRUE(client->send(test::echoOf(5)));
    ASSERT_TRUE(talk.wasAsked(talk.accepted(), 1));
    client->close();
    recording.stop();
    const test::RecordedFile file(folder.m_Path / "zone.pcapng");
    const std::string all = outputOf("tshark -r " + path +
                                     " -o ip.check_checksum:TRUE -o tcp.check_checksum:TRUE -T fields -e ip.src "
                                     "-e tcp.len -e frame.comment -e ip.checksum.status -e tcp.checksum.status "
                                     "-e _ws.malformed");
    size_t lines = 0;
    std::istringstream stream(all);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with("127.0.0.1\t"))
        {
            ++lines;
            // Both checksums are good.
            EXPECT_TRUE(line.ends_with("\t1\t1\t")) << line;
        }
    EXPECT_EQ(lines, file.m_Packets.size()) << all;
    EXPECT_NE(all.find("connected to 127.0.0.1:"), std::string::npos) << all;
    EXPECT_NE(all.find("ended: closed here"), std::string::npos) << all;
    const std::string infos = outputOf("capinfos " + path);
    EXPECT_NE(infos.find("pcapng"), std::string::npos) << infos;
    EXPECT_NE(infos.find("Number of packets:   " + std::to_string(file.m_Packets.size())), std::string::npos) << infos;
}

} // namespace
