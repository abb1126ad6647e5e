#include "tests/support/socks_server.h"

#include "tests/support/child.h"
#include "tests/support/loopback.h"

namespace test
{

namespace
{

constexpr const char* kProgram = "microsocks";
// Another process may take the free port first.
constexpr int kAttempts = 5;

} // namespace

SocksServer::SocksServer(zet::System& system, const std::vector<std::string>& words)
{
    if (!Child::isThere(kProgram))
    {
        m_Reason = std::string(kProgram) + " is not installed";
        return;
    }
    for (int i = 0; i < kAttempts && !m_IsUp; ++i)
    {
        m_Port = findFreePort();
        std::vector<std::string> all{kProgram, "-i", "127.0.0.1", "-p", std::to_string(m_Port)};
        all.insert(all.end(), words.begin(), words.end());
        m_Child = std::make_unique<Child>(all);
        tickUntil(system,
                  [&]
                  {
                      m_Child->output();
                      m_IsUp = m_Child->isStarted() && !m_Child->isOver() && isListening(m_Port);
                      return m_IsUp || m_Child->isOver();
                  });
    }
    if (!m_IsUp)
        m_Reason = std::string(kProgram) + " does not listen";
}

SocksServer::~SocksServer() = default;

} // namespace test
