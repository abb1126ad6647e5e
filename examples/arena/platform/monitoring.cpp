// What the operator's monitoring asks: the statistics of this process, and a measurement of its transactions.
#include "commands/system_info.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/platform.h"
#include "framework/system.h"
#include "packs/profiling.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

// Since the profiler was enabled last.
struct Profiler
{
    unsigned int m_Begin = zet::getTimeTick();
    unsigned long long m_Commits = 0;
};

bool isOperator(Platform& platform, const Session& session)
{
    return session.isLoggedIn() && session.getStored().m_Name == platform.getOptions().m_Operator;
}

// One entry: the name of the server, its statistics as JSON, and the seconds since its start. None for others.
void tellStatistics(Platform& platform, Session& session)
{
    CCmdSystemInfoReply reply;
    if (isOperator(platform, session))
    {
        SystemCmdInfo& statistics = platform.getStatistics();
        cSystemInfo& info = reply.m_SystemInfos.emplace_back();
        info.m_Text1 = platform.getOptions().m_Name;
        info.m_Text2 = statistics.ToJsonString();
        info.m_Text3 = zet::formatText(L"%lld", statistics.GetRunningSpan().getTotalSeconds());
    }
    session.send(reply);
}

// 1 begins, 0 is answered: transactions in a second, their number, and the milliseconds measured.
void control(Platform& platform, Profiler& profiler, Session& session, const CCmdProfilerEnable& command)
{
    const unsigned long long commits = platform.getAccounts().getDatabase().getCommits();
    if (command.m_Enable != 0)
    {
        profiler = {zet::getTimeTick(), commits};
        return;
    }
    const unsigned int time = std::max(zet::getTimeTick() - profiler.m_Begin, 1U);
    const unsigned long long number = commits - profiler.m_Commits;
    CCmdProfilerUsage usage;
    usage.m_Floats.push_back(static_cast<float>(number) * 1000 / static_cast<float>(time));
    usage.m_Values = {static_cast<unsigned long>(number), time};
    session.send(usage);
}

} // namespace

void installMonitoring(Platform& platform)
{
    platform.on<CCmdSystemInfoRequest>([&platform](Session& session, const CCmdSystemInfoRequest&)
                                       { tellStatistics(platform, session); });
    const auto profiler = std::make_shared<Profiler>();
    platform.on<CCmdProfilerEnable>(
        [&platform, profiler](Session& session, const CCmdProfilerEnable& command)
        {
            if (isOperator(platform, session))
                control(platform, *profiler, session, command);
        });
}

} // namespace arena::platform
