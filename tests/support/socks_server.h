// A real SOCKS5 server, from a package of the system, for one test.
#pragma once

#include "framework/system.h"

#include <memory>
#include <string>
#include <vector>

namespace test
{

class Child;

// Listens on a free port of 127.0.0.1. Ends with the object, and with the test process.
class SocksServer
{
public:
    // The arguments follow address and port on the program's command line.
    SocksServer(zet::System& system, const std::vector<std::string>& words);
    ~SocksServer();
    SocksServer(const SocksServer&) = delete;
    SocksServer& operator=(const SocksServer&) = delete;

    bool isUp() const { return m_IsUp; }
    // The reason why it does not run.
    const std::string& reason() const { return m_Reason; }
    unsigned short port() const { return m_Port; }

private:
    std::unique_ptr<Child> m_Child;
    unsigned short m_Port = 0;
    bool m_IsUp = false;
    std::string m_Reason;
};

} // namespace test
