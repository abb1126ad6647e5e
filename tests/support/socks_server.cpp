#include "tests/support/socks_server.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#ifndef _WIN32
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace test
{

namespace
{

constexpr const char* kProgram = "microsocks";
// Somebody else may take the free port before the program does.
constexpr int kAttempts = 5;

std::string findProgram()
{
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
    {
        const auto place = std::filesystem::path(folder) / kProgram;
        std::error_code fault;
        if (std::filesystem::exists(place, fault))
            return place.string();
    }
    return std::string();
}

unsigned short findPort(zet::System& system)
{
    const zet::Unknown::Handle_T<zet::TcpServer> server = new zet::TcpServer;
    server->start(&system);
    const unsigned short port = server->listen(0, 1) ? server->getPort() : 0;
    server->close();
    server->stop();
    return port;
}

bool isListening(zet::System& system, unsigned short port)
{
    const zet::Unknown::Handle_T<zet::TcpStream> probe = new zet::TcpStream;
    probe->start(&system);
    const bool stands =
        probe->connect(L"127.0.0.1", port, false) &&
        tickUntil(system, [&] { return probe->getConnectionState() != zet::TcpConnection::kConnecting; }) &&
        probe->getConnectionState() == zet::TcpConnection::kEstablished;
    probe->close();
    probe->stop();
    return stands;
}

} // namespace

SocksServer::SocksServer(zet::System& system, const std::vector<std::string>& words)
{
    const std::string program = findProgram();
    if (program.empty())
    {
        m_Reason = std::string(kProgram) + " is not installed";
        return;
    }
    for (int i = 0; i < kAttempts && !m_IsUp; ++i)
    {
        m_Port = findPort(system);
        if (m_Port == 0 || !begin(program, words))
            continue;
        tickUntil(system,
                  [&]
                  {
                      m_IsUp = !hasEnded() && isListening(system, m_Port);
                      return m_IsUp || m_Process == 0;
                  });
        if (!m_IsUp)
            end();
    }
    if (!m_IsUp)
        m_Reason = program + " does not listen";
}

SocksServer::~SocksServer()
{
    end();
}

#ifndef _WIN32

bool SocksServer::begin(const std::string& program, const std::vector<std::string>& words)
{
    std::vector<std::string> all{program, "-i", "127.0.0.1", "-p", std::to_string(m_Port)};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t process = fork();
    if (process == 0)
    {
        // Only what is safe between fork and exec. The sockets of the test are not the program's.
#ifdef __linux__
        prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
        const int nowhere = open("/dev/null", O_RDWR);
        for (int file = 0; file < 3; ++file)
            dup2(nowhere, file);
        for (int file = 3; file < 256; ++file)
            close(file);
        execv(program.c_str(), arguments.data());
        _exit(127);
    }
    m_Process = process > 0 ? process : 0;
    return process > 0;
}

bool SocksServer::hasEnded()
{
    if (m_Process != 0 && waitpid(m_Process, nullptr, WNOHANG) == m_Process)
        m_Process = 0;
    return m_Process == 0;
}

void SocksServer::end()
{
    if (m_Process == 0)
        return;
    kill(m_Process, SIGKILL);
    waitpid(m_Process, nullptr, 0);
    m_Process = 0;
}

#else

// The program is one of a Unix.
bool SocksServer::begin(const std::string&, const std::vector<std::string>&)
{
    return false;
}
bool SocksServer::hasEnded()
{
    return true;
}
void SocksServer::end() {}

#endif

} // namespace test
