// A server constructed with the address 127.0.0.1 listened on all addresses of the machine, and nothing could change
// that: the address is the one that the server reports, and its header did not say so. The address to listen on is now
// a separate setting.
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::tickUntil;

TEST(Bugs, APortMayTakeOneAddressOnly)
{
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser, L"127.0.0.1");
    server->start(&system);
    EXPECT_FALSE(server->setBindAddress(L"localhost"));
    EXPECT_FALSE(server->setBindAddress(L"127.0.0"));
    EXPECT_FALSE(server->setBindAddress(L"::g"));
    ASSERT_TRUE(server->setBindAddress(L"127.0.0.1"));
    ASSERT_TRUE(server->listen(0, 5));
    const ClientHandle client = new test::Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    EXPECT_TRUE(tickUntil(system, [&] { return server->GetClientCount() == 1; }));
    // The same port is free on another address of this machine.
    const zet::Unknown::Handle_T<test::Server> other = new test::Server(analyser);
    other->start(&system);
    ASSERT_TRUE(other->setBindAddress(L"127.0.0.2"));
    EXPECT_TRUE(other->listen(server->getPort(), 5));
    other->close();
    // Empty means all addresses, one of which is taken.
    ASSERT_TRUE(other->setBindAddress(L""));
    EXPECT_FALSE(other->listen(server->getPort(), 5));
    client->close();
    server->close();
    system.exit();
}

} // namespace
