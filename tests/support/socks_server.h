// A real SOCKS5 server, from a package of the system, while a test lasts.
#pragma once

#include "framework/system.h"

#include <memory>
#include <string>
#include <vector>

namespace test
{

class Child;

// Listens on a free port of 127.0.0.1. Ended with the object, and with the test should that die first.
class SocksServer
{
public:
    // The words are those of the program's command line behind address and port.
    SocksServer(zet::System& system, const std::vector<std::string>& words);
    ~SocksServer();
    SocksServer(const SocksServer&) = delete;
    SocksServer& operator=(const SocksServer&) = delete;

    bool isUp() const { return m_IsUp; }
    // Why it is not up.
    const std::string& reason() const { return m_Reason; }
    unsigned short port() const { return m_Port; }

private:
    std::unique_ptr<Child> m_Child;
    unsigned short m_Port = 0;
    bool m_IsUp = false;
    std::string m_Reason;
};

} // namespace test
