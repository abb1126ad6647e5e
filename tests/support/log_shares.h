// Refills the shares of the log that bound its lines about ends, for tests of single lines after many others.
#pragma once

#include "framework/time.h"
#include "net/session/module.h"
#include "net/session/session.h"
#include "net/tcp/server.h"
#include "tests/support/log_lines.h"

namespace test
{

inline void refillLogShares()
{
    // A test with its own clock begins with full shares: to them, time has jumped.
    if (zet::TestClock::isOn())
        return;
    // Each share takes one line at a time far from that of its last one.
    const LogLines wanted;
    const zet::TestClock clock(1700000000, zet::getTimeTick() + 0x40000000);
    const auto module = zet::NetModule::createInstance();
    zet::NetSession::createInstance(module)->connect(zet::NetAddress(L"127.0.0.1", 1), zet::Uuid());
    zet::TcpServer port;
    port.listen(0, 1);
    zet::TcpConnection connection;
    connection.connect(L"127.0.0.1", port.getPort(), false);
    connection.close();
}

} // namespace test
