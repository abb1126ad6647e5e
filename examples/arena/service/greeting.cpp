#include "examples/arena/service/greeting.h"

#include "examples/arena/deliver.h"
#include "examples/arena/lines.h"
#include "examples/arena/service/service.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena
{

Greeting::Greeting(Service& service) : CFrameworkClientSocket(&service.getGreetingAnalyser()), m_Service(service) {}

void Greeting::install(CCmdAnalyserSocket& analyser)
{
    ARENA_HANDLE(analyser, CCmdServerHelloReply, &Greeting::onHelloReply);
    ARENA_HANDLE(analyser, CCmdServerInfoResponse, &Greeting::onInfo);
    ARENA_HANDLE(analyser, CCmdServerEchoReply, &Greeting::onEchoReply);
}

bool Greeting::begin(const CCmdServerRegister& record)
{
    if (!start(&m_Service))
        return false;
    copyRecord(record, m_Record);
    CCmdServerHello hello;
    m_Service.fillRecord(hello);
    CCmdServerEcho echo;
    echo.m_Data = kEcho;
    // Replies come in the order of the requests, so all three are sent at once.
    if (connect(record.m_ServerAddress[0], record.m_ServerPort, false) && send(hello) &&
        send(CCmdServerInfoRequest()) && send(echo))
    {
        m_Deadline.set(kAnswerTime);
        return true;
    }
    close();
    stop();
    return false;
}

void Greeting::onTick(unsigned int tick)
{
    CFrameworkClientSocket::onTick(tick);
    if (!isInvalid() && !m_Deadline.isOver(tick))
        return;
    if (!m_IsDone)
        zet::Log::warning(L"'%s' did not answer a greeting", m_Record.m_ServerName);
    close();
    stop();
}

void Greeting::onHelloReply(const CCmdServerHelloReply& command)
{
    copyRecord(command, m_Record);
}

void Greeting::onInfo(const CCmdServerInfoResponse& command)
{
    m_OnlineCount = command.m_OnlineCount;
    m_MaxOnlineNum = command.m_MaxOnlineNum;
}

void Greeting::onEchoReply(const CCmdServerEchoReply& command)
{
    if (command.m_Data == kEcho)
    {
        m_IsDone = true;
        say("%s%s, load %d of %d", lines::kGreeted, describe(m_Record), m_OnlineCount, m_MaxOnlineNum);
    }
    // The rest follows at the end of the tick.
    close();
}

} // namespace arena
