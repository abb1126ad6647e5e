#include "tests/support/udp_test.h"
#include "transport/send_to_all.h"

#include <algorithm>

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;

class CountedNote : public NoteCommand
{
public:
    using NoteCommand::NoteCommand;
    bool Write(CCmdPackager* pk) const override
    {
        ++m_Encodings;
        return NoteCommand::Write(pk);
    }
    mutable int m_Encodings = 0;
};

class UdpSendToAll : public test::UdpTest
{
protected:
    std::vector<NoteSocketHandle> connect(int count)
    {
        std::vector<NoteSocketHandle> clients;
        for (int i = 0; i < count; ++i)
        {
            clients.push_back(m_Net.connect());
            EXPECT_TRUE(clients.back());
        }
        return clients;
    }
};

TEST_F(UdpSendToAll, OneEncodingReachesEachSocket)
{
    const auto clients = connect(3);
    const CountedNote note(5, 3000);
    EXPECT_EQ(SendToAll(m_Net.m_Server->m_Accepted, note), 3);
    EXPECT_EQ(SendToAll(m_Net.m_Server->m_Accepted, NoteCommand(6)), 3);
    EXPECT_EQ(note.m_Encodings, 1);
    const auto haveTwo = [&]
    { return std::ranges::all_of(clients, [](const auto& client) { return client->m_Numbers.size() == 2; }); };
    ASSERT_TRUE(m_Net.until(haveTwo));
    for (const auto& client : clients)
        EXPECT_EQ(client->m_Numbers, (std::vector<int>{5, 6}));
}

TEST_F(UdpSendToAll, ClosedAndFullSocketsDoNotTakeIt)
{
    auto clients = connect(3);
    clients[0]->close();
    clients[1]->setOutputLimit(0);
    clients.emplace_back();
    EXPECT_EQ(SendToAll(clients, NoteCommand(1)), 1);
    // The full one breaks off, since later commands would be misread.
    ASSERT_TRUE(m_Net.until([&] { return clients[1]->m_Closes > 0; }));
    EXPECT_EQ(clients[2]->m_Closes, 0);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
}

TEST_F(UdpSendToAll, AFrameAboveTheLimitIsTakenByNoneAndBreaksNone)
{
    const auto clients = connect(2);
    CCmdPackager packager;
    packager.SetCmdID(NoteCommand::kId);
    // The frame adds two bytes of id and three of size.
    const std::vector<unsigned char> bytes(UdpClientSocket::kFrameLimit - 4, 7);
    ASSERT_TRUE(packager.Write(bytes.data(), static_cast<int>(bytes.size())));
    EXPECT_EQ(SendToAll(clients, packager), 0);
    EXPECT_EQ(SendToAll(clients, NoteCommand(2)), 2);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
}

} // namespace
