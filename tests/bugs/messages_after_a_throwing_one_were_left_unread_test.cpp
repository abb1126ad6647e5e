// Without memory for the log line of an invalid message, the exception left the tick of the link. The tick had by then
// cleared the flag for received bytes that are left, so the messages received with the invalid one stayed in the input
// buffer, unread, until the peer sent more. The flag is now cleared only once the bytes are read.
#include "framework/log.h"
#include "tests/support/allocations.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

using test::FailingAllocations;
using test::NetPair;
using Bytes = std::vector<unsigned char>;

void addPacket(Bytes& all, const Bytes& content)
{
    all.insert(all.end(), {static_cast<unsigned char>(content.size()), 0, 0, 0});
    all.insert(all.end(), content.begin(), content.end());
}

constexpr int kNotes = 6;

// A greeting, a message of an unknown class, and notes with the number 7, by hand.
Bytes greetingThenInvalidThenNotes()
{
    Bytes all;
    addPacket(all, {'z', 'n', 's', 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    addPacket(all, {7, 'U', 'n', 'k', 'n', 'o', 'w', 'n'});
    const char name[] = "Msg_NetCommand";
    Bytes note{sizeof name - 1};
    note.insert(note.end(), name, name + sizeof name - 1);
    // No addresses; 18 bytes of data: id, 12 bytes of payload; version, client index, number, no ballast.
    const Bytes data{0x00, 0x12, 0x23, 0x01, 0x30, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0};
    note.insert(note.end(), data.begin(), data.end());
    for (int i = 0; i < kNotes; ++i)
        addPacket(all, note);
    return all;
}

struct LinesAreFormatted
{
    LinesAreFormatted() : m_Sink(zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>&) {})) {}
    ~LinesAreFormatted() { zet::Log::removeSink(m_Sink); }
    const int m_Sink;
};

// Whether the notes are handled without more input, or the session ends. Each allocation that fails may cost one note.
bool areNotesRead(long long succeeding, int failing, bool& isOver)
{
    NetPair net;
    net.m_Server->m_Accepted.reserve(4);
    int notes = 0;
    test::NetNotes::s_Handler = [&](unsigned long, unsigned long, const test::NoteCommand& note)
    { notes += note.m_Number == 7; };
    const zet::Unknown::Handle_T<zet::TcpStream> peer(new zet::TcpStream);
    peer->start(&net.m_System);
    peer->connect(L"127.0.0.1", net.m_Server->getPort(), false);
    EXPECT_TRUE(test::tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); }));
    const Bytes bytes = greetingThenInvalidThenNotes();
    EXPECT_EQ(peer->send(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
    net.m_System.tick();
    {
        const FailingAllocations failures(succeeding, failing);
        net.m_System.wait();
        net.m_System.tick();
        isOver = failures.isOver();
    }
    for (int i = 0; i < 20 && notes < kNotes && net.accepted()->getState() != zet::NetSession::kDown; ++i)
        net.m_System.tick();
    const bool isRead = notes >= kNotes - failing || net.accepted()->getState() == zet::NetSession::kDown;
    peer->close();
    peer->stop();
    return isRead;
}

TEST(Bugs, MessagesAreReadThoughTheOneBeforeThemThrew)
{
    const LinesAreFormatted lines;
    for (int failing = 1; failing <= 3; ++failing)
    {
        bool isOver = true;
        for (long long succeeding = 0; isOver && succeeding < 1000; ++succeeding)
            EXPECT_TRUE(areNotesRead(succeeding, failing, isOver)) << failing << " fail after " << succeeding;
        EXPECT_FALSE(isOver) << "every allocation of the tick has failed once";
    }
}

} // namespace
