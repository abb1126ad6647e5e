#include "tests/support/child.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace test
{

namespace
{

// Handles of the test that a program must not inherit.
constexpr int kMostHandles = 1024;

} // namespace

Child::Child(const std::vector<std::string>& words, const std::vector<std::string>& variables)
{
    // Closed in the child, so that it sees the end of its input when the test closes it.
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0)
        return;
    if (pipe2(output, O_CLOEXEC) != 0)
    {
        close(input[0]);
        close(input[1]);
        return;
    }
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    std::vector<char*> environment;
    for (const std::string& variable : variables)
        environment.push_back(const_cast<char*>(variable.c_str()));
    for (char** variable = environ; *variable; ++variable)
        environment.push_back(*variable);
    environment.push_back(nullptr);
    m_Id = fork();
    if (m_Id == 0)
    {
        // Only functions that are safe between fork and exec.
#ifdef __linux__
        prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
        dup2(input[0], 0);
        dup2(output[1], 1);
        dup2(output[1], 2);
        for (int handle = 3; handle < kMostHandles; ++handle)
            close(handle);
        environ = environment.data();
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    m_Input = input[1];
    m_Output = output[0];
    fcntl(m_Output, F_SETFL, O_NONBLOCK);
}

Child::~Child()
{
    closeInput();
    if (m_Id > 0)
    {
        kill(m_Id, SIGKILL);
        waitpid(m_Id, nullptr, 0);
    }
    if (m_Output >= 0)
        close(m_Output);
}

bool Child::write(const std::string& text)
{
    // A program that has ended must not end the test by SIGPIPE.
    struct sigaction ignored = {};
    struct sigaction before = {};
    ignored.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignored, &before);
    const ssize_t written = ::write(m_Input, text.data(), text.size());
    sigaction(SIGPIPE, &before, nullptr);
    return written == static_cast<ssize_t>(text.size());
}

void Child::closeInput()
{
    if (m_Input >= 0)
        close(m_Input);
    m_Input = -1;
}

const std::string& Child::output()
{
    char piece[4096];
    ssize_t got;
    while ((got = read(m_Output, piece, sizeof piece)) > 0)
        m_Text.append(piece, static_cast<size_t>(got));
    m_IsOver = got == 0;
    return m_Text;
}

const std::string& Child::outputWith(std::string_view text)
{
    constexpr int kMostMilliseconds = 60000;
    while (output().find(text) == std::string::npos && !m_IsOver)
    {
        pollfd waiting{m_Output, POLLIN, 0};
        if (poll(&waiting, 1, kMostMilliseconds) == 0)
            break;
    }
    return m_Text;
}

bool Child::signal(int number) const
{
    return m_Id > 0 && kill(m_Id, number) == 0;
}

int Child::wait()
{
    int status = 0;
    if (m_Id <= 0 || waitpid(m_Id, &status, 0) != m_Id)
        return -1;
    m_Id = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool Child::isThere(const std::string& program)
{
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((folder + '/' + program).c_str(), X_OK) == 0)
            return true;
    return false;
}

namespace
{

sockaddr_in addressOf(unsigned short port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

} // namespace

unsigned short findFreePort()
{
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = addressOf(0);
    socklen_t size = sizeof address;
    const bool isFound = bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                         getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(probe);
    return isFound ? ntohs(address.sin_port) : static_cast<unsigned short>(0);
}

bool isListening(unsigned short port)
{
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = addressOf(port);
    const bool isThere = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    return isThere;
}

} // namespace test
