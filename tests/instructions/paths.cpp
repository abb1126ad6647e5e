// The paths whose instructions are counted: run under callgrind by scripts/check_instructions.py, which compares the
// counts with tests/instructions/baseline.json. With --key it prints which counts of that file are of this build.
#include "bench/support/loopback.h"
#include "bench/support/records.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "tools/frame_decoder.h"
#include "transport/send_to_all.h"

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace
{

using bench::kRecords;

#ifdef __clang__
constexpr char kCompiler[] = "Clang " __clang_version__;
#else
constexpr char kCompiler[] = "GCC " __VERSION__;
#endif

int g_Failures = 0;

void need(bool isGood, const char* what)
{
    if (isGood)
        return;
    std::fprintf(stderr, "instruction_paths: %s\n", what);
    ++g_Failures;
}

// Counts what work does, which is called once before, so that memory and tables that are made once do not count. The
// name carries how many commands or ticks that is.
template <class Work>
void count(const char* name, int calls, Work work)
{
    work();
    const std::string whole = std::string(name) + "/" + std::to_string(calls);
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(whole.c_str());
}

template <class T>
std::vector<T> recordsOf()
{
    std::mt19937 random(9);
    std::vector<T> records(kRecords);
    for (T& record : records)
        bench::fill(record, random);
    return records;
}

template <class T>
std::vector<std::string> framesOf(const std::vector<T>& records)
{
    std::vector<std::string> frames;
    for (const T& record : records)
    {
        CCmdPackager packager;
        need(record.Write(&packager), "a command does not write itself");
        int size = 0;
        const unsigned char* const frame = packager.FrameInPlace(size);
        frames.emplace_back(reinterpret_cast<const char*>(frame), static_cast<size_t>(size));
    }
    return frames;
}

unsigned long g_Handled = 0;

void countFrames(const char* name, unsigned short id, CmdProcess process, const std::vector<std::string>& frames)
{
    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(id, process, [](CCmdHead*, unsigned long, unsigned long) { ++g_Handled; });
    CCmdPackager packager;
    g_Handled = 0;
    count(name, kRecords,
          [&]
          {
              for (const std::string& frame : frames)
              {
                  packager.Receive(frame.data(), static_cast<int>(frame.size()));
                  analyser->Analyse(packager, 0, 0);
              }
          });
    need(g_Handled == 2 * kRecords, name);
}

void countCommands()
{
    // Between servers the name is mostly empty.
    auto keys = recordsOf<CCmdKeyEvent>();
    for (CCmdKeyEvent& key : keys)
        key.m_AccountName.clear();
    CCmdPackager packager;
    count("key event, encode", kRecords,
          [&]
          {
              for (const CCmdKeyEvent& key : keys)
              {
                  packager.Clear();
                  key.Write(&packager);
                  bench::keep(packager);
              }
          });
    countFrames("key event, frame to handler", command_id::CCmdKeyEvent, CCmdKeyEvent::CCmdKeyEvent_Process,
                framesOf(keys));
    countFrames("two skeletons, frame to handler", command_id::CCmdSkeletons, CCmdSkeletons::CCmdSkeletons_Process,
                framesOf(recordsOf<CCmdSkeletons>()));

    std::string recording;
    for (const std::string& frame : framesOf(keys))
        recording += frame;
    size_t lines = 0;
    count("key event, frame to JSON", kRecords,
          [&]
          {
              tools::FrameDecoder decoder(tools::Framing::kStream, [&](std::string_view, bool) { ++lines; });
              decoder.add(recording);
          });
    need(lines == 2 * kRecords, "lines of JSON");
}

void countAccounts()
{
    constexpr int kAccounts = 8;
    std::vector<std::unique_ptr<AccountData>> accounts;
    std::vector<std::unique_ptr<CCmdPackager>> written;
    for (unsigned seed = 1; seed <= kAccounts; ++seed)
    {
        accounts.push_back(bench::accountOf(seed));
        written.push_back(std::make_unique<CCmdPackager>());
    }
    count("account, encode", kAccounts,
          [&]
          {
              for (size_t i = 0; i < kAccounts; ++i)
              {
                  written[i]->Clear();
                  accounts[i]->Write(written[i].get());
              }
          });
    bool isRead = true;
    count("account, decode", kAccounts,
          [&]
          {
              for (const auto& packager : written)
              {
                  packager->Reset();
                  AccountData account;
                  isRead = account.Read(packager.get()) && isRead;
              }
          });
    need(isRead, "an account does not read itself");
}

void onEcho(CCommandSocket*, CCmdHead* command, unsigned long, unsigned long)
{
    g_Handled += static_cast<CCmdServerEcho*>(command)->m_Data == 7;
}

// Both ends in one System, on the test clock: what the kernel does is not counted.
void countSockets()
{
    zet::TestClock clock(1700000000, 1000);
    CCmdAnalyserSocket analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_ProcessSocket, onEcho, 0, 0);
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<bench::Server> server = new bench::Server(&analyser);
    const zet::Unknown::Handle_T<bench::Client> client = new bench::Client(&analyser);
    server->start(&system);
    client->start(&system);
    need(server->listen(0, 2 * kRecords), "listen");
    client->connect(L"127.0.0.1", server->zet::TcpServer::getPort(), false);
    for (int i = 0; i < 1000 &&
                    (server->GetClientCount() == 0 || client->getConnectionState() != zet::TcpConnection::kEstablished);
         ++i)
    {
        system.wait();
        system.tick();
    }
    CCmdServerEcho echo;
    echo.m_Data = 7;
    const auto send = [&](int commands)
    {
        g_Handled = 0;
        for (int i = 0; i < commands; ++i)
            need(client->send(echo), "send");
        system.tick();
        // What was sent has arrived when the call returns, as both ends are on this machine.
        system.wait();
        system.tick();
        need(g_Handled == static_cast<unsigned long>(commands), "commands did not arrive in one tick");
    };
    count("commands one way, 64 in a tick", kRecords, [&] { send(kRecords); });
    count("a command one way, its own ticks", 1, [&] { send(1); });
    count("a tick without work", 1, [&] { system.tick(); });

    const auto turnUntil = [&](auto isDone, const char* what)
    {
        for (int i = 0; i < 1000 && !isDone(); ++i)
        {
            system.wait();
            system.tick();
        }
        need(isDone(), what);
    };
    std::vector<zet::Unknown::Handle_T<bench::Client>> others;
    for (int i = 1; i < kRecords; ++i)
    {
        others.push_back(new bench::Client(&analyser));
        others.back()->start(&system);
        others.back()->connect(L"127.0.0.1", server->zet::TcpServer::getPort(), false);
    }
    turnUntil([&] { return server->GetClientCount() == kRecords; }, "connections");
    count("a command to each of 64 connections", kRecords,
          [&]
          {
              need(SendToAll(*server->GetAllClientSocket(), echo) == kRecords, "send to all");
              system.tick();
              // The connections that got it are read in a later call.
              CALLGRIND_TOGGLE_COLLECT;
              g_Handled = 0;
              turnUntil([] { return g_Handled == kRecords; }, "commands to all did not arrive");
              CALLGRIND_TOGGLE_COLLECT;
          });
    count("a command from each of 64 connections", kRecords,
          [&]
          {
              g_Handled = 0;
              // Sent after the tick of their sockets.
              CALLGRIND_TOGGLE_COLLECT;
              client->send(echo);
              for (const auto& other : others)
                  other->send(echo);
              system.tick();
              CALLGRIND_TOGGLE_COLLECT;
              system.wait();
              system.tick();
              need(g_Handled == kRecords, "commands from all did not arrive in one tick");
          });
    for (const auto& other : others)
        other->close();
    client->close();
    server->close();
    system.exit();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--key") == 0)
    {
        std::printf("%s, %s, glibc %d.%d\n", kCompiler, BUILD_OF_PATHS, __GLIBC__, __GLIBC_MINOR__);
        return 0;
    }
    countCommands();
    countAccounts();
    countSockets();
    return g_Failures == 0 ? 0 : 1;
}
