#include "commands/registry.h"
#include "host/tasks.h"
#include "tests/host/service_steps.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;

// A service with a server, and a client of it in the same System.
struct Drained
{
    Drained()
    {
        m_Service.setDrainTime(1h);
        m_Handlers.on<CCmdServerEcho>([this](CCommandSocket& socket, const CCmdServerEcho&) { m_Asker = &socket; });
        m_Server = new test::Server(m_Analyser.get());
        m_Client = new test::Client(m_ClientAnalyser.get());
        m_Service.onStart(
            [this]
            {
                return m_Server->start(&m_Service.getSystem()) && m_Server->listen(0, 0) &&
                       m_Client->start(&m_Service.getSystem()) &&
                       m_Client->connect(L"127.0.0.1", m_Server->getPort(), false);
            });
        m_Service.onStop([this] { m_Client->close(); });
    }
    bool isUp() const { return m_Client->getConnectionState() == zet::TcpConnection::kEstablished; }
    void answer()
    {
        CCmdServerEchoReply reply;
        reply.m_Data = 7;
        EXPECT_TRUE(m_Asker->send(reply));
    }

    host::Service m_Service{L"zone", ""};
    test::ServiceSteps m_Steps{m_Service};
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    std::unique_ptr<CCmdAnalyserSocket> m_ClientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    host::Handlers m_ClientHandlers{*m_ClientAnalyser};
    zet::Unknown::Handle_T<test::Server> m_Server;
    test::ClientHandle m_Client;
    CCommandSocket* m_Asker = nullptr;
};

TEST(ServiceDrain, OpenQuestionHoldsTheConnectionsUntilItsAnswer)
{
    Drained drained;
    drained.m_Service.serve(*drained.m_Server);
    host::Questions questions(drained.m_ClientHandlers, drained.m_Service.getSystem());
    questions.expect<CCmdServerEchoReply>();
    drained.m_Service.await(questions);
    host::Tasks tasks(questions);
    unsigned long answered = 0;
    drained.m_Steps.add(
        [&]
        {
            if (drained.isUp())
                tasks.ask<CCmdServerEchoReply>(*drained.m_Client, CCmdServerEcho(), 1h,
                                               [&](const host::Reply<CCmdServerEchoReply>& reply)
                                               {
                                                   if (const auto* const got = std::get_if<CCmdServerEchoReply>(&reply))
                                                       answered = got->m_Data;
                                               });
            return drained.isUp();
        });
    drained.m_Steps.add([&] { return drained.m_Asker != nullptr; });
    drained.m_Steps.add(
        [&]
        {
            drained.m_Service.beginDrain();
            return true;
        });
    int ticks = 0;
    drained.m_Steps.add(
        [&]
        {
            EXPECT_TRUE(drained.isUp());
            EXPECT_EQ(drained.m_Server->GetClientCount(), 1);
            return ++ticks == 10;
        });
    drained.m_Steps.add(
        [&]
        {
            drained.answer();
            return true;
        });
    test::LogLines lines;
    EXPECT_EQ(drained.m_Steps.run(), 0);
    EXPECT_TRUE(drained.m_Steps.areDone());
    EXPECT_EQ(answered, 7u);
    EXPECT_FALSE(drained.isUp());
    for (const std::wstring& line : lines.texts())
        EXPECT_EQ(line.find(L"drain time"), std::wstring::npos) << "ended by time";
}

TEST(ServiceDrain, AnswerOfEachConnectionIsDecidedByItsServer)
{
    Drained drained;
    int asked = 0;
    drained.m_Service.serve(*drained.m_Server, [&](CFrameworkClientSocket&) { return ++asked > 5; });
    // Not looked at, since the server decides.
    drained.m_Service.onBusy([&] { return drained.m_Server->GetClientCount() > 0; });
    drained.m_Steps.add([&] { return drained.m_Server->GetClientCount() == 1; });
    drained.m_Steps.add(
        [&]
        {
            drained.m_Service.beginDrain();
            return true;
        });
    EXPECT_EQ(drained.m_Steps.run(), 0);
    EXPECT_TRUE(drained.m_Steps.areDone());
    EXPECT_EQ(asked, 6);
}

TEST(ServiceDrain, AnswerThatIsNotReadYetHoldsItsConnection)
{
    Drained drained;
    static int got = 0;
    got = 0;
    // The client is in this System, too.
    drained.m_Service.onBusy([] { return got == 0; });
    drained.m_Service.serve(*drained.m_Server, [](CFrameworkClientSocket&) { return true; });
    // Larger than the system's buffers; the client does not read, as it left the System.
    constexpr int kLarge = 32 * 1024 * 1024;
    drained.m_Steps.add([&] { return drained.m_Server->GetClientCount() == 1 && drained.isUp(); });
    drained.m_Steps.add(
        [&]
        {
            drained.m_Client->stop();
            EXPECT_TRUE(drained.m_Server->m_Accepted.back()->send(test::NoteCommand(1, kLarge)));
            drained.m_Service.beginDrain();
            return true;
        });
    int ticks = 0;
    drained.m_Steps.add(
        [&]
        {
            EXPECT_EQ(drained.m_Server->GetClientCount(), 1);
            EXPECT_GT(drained.m_Server->m_Accepted.back()->getOutputSize(), 0u);
            return ++ticks == 10;
        });
    drained.m_Steps.add([&] { return drained.m_Client->start(&drained.m_Service.getSystem()); });
    drained.m_ClientAnalyser->Install(
        test::NoteCommand::kId, test::NoteCommand::Process,
        [](CCommandSocket*, CCmdHead* command, unsigned long, unsigned long)
        { got = static_cast<test::NoteCommand*>(command)->m_Ballast; },
        0, 0);
    EXPECT_EQ(drained.m_Steps.run(), 0);
    EXPECT_TRUE(drained.m_Steps.areDone());
    EXPECT_EQ(got, kLarge);
}

} // namespace
