// While any thread of the process had a recording, each message of each net session was copied to be reported, also on
// threads without one: a recording on one thread cost all others an allocation of the message's size.
#include "host/recording.h"
#include "tests/support/allocations.h"
#include "tests/support/log_folder.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace
{

// Bytes that this thread allocates to send a command over the session.
long long bytesToSend(test::NotingSession& session)
{
    test::NoteCommand note;
    const test::AllocationCount allocations;
    EXPECT_TRUE(session.sendNetCommand(&note));
    return allocations.bytes();
}

TEST(Bugs, AMessageIsNotCopiedForTheRecordingOfAnotherThread)
{
    test::LogFolder folder;
    test::NetPair pair;
    ASSERT_TRUE(pair.m_IsListening);
    const test::NotingHandle session = pair.connect();
    ASSERT_TRUE(session);
    bytesToSend(*session);
    const long long before = bytesToSend(*session);

    std::promise<bool> started;
    std::promise<void> measured;
    std::thread other(
        [&]
        {
            zet::System system;
            system.init();
            {
                host::Recording recording;
                started.set_value(recording.start(system, (folder.m_Path / "other.pcapng").generic_wstring().c_str()));
                measured.get_future().wait();
            }
            system.exit();
        });
    EXPECT_TRUE(started.get_future().get());
    EXPECT_LE(bytesToSend(*session), before);
    measured.set_value();
    other.join();
}

} // namespace
