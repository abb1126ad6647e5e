// What the operator's monitoring asks: the statistics of this process, and a measurement of its processor time.
#include "commands/system_info.h"
#include "examples/arena/platform/platform.h"
#include "framework/system.h"
#include "packs/profiling.h"

#include <ctime>

namespace arena::platform
{

namespace
{

// Since the profiler was enabled.
struct Profiler
{
    unsigned int m_Begin = zet::getTimeTick();
    std::clock_t m_Processor = std::clock();
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

// 1 begins, 0 ends and is answered: the share of a core that the process has used, and the milliseconds measured.
void control(Profiler& profiler, Session& session, const CCmdProfilerEnable& command)
{
    if (command.m_Enable != 0)
    {
        profiler = Profiler();
        return;
    }
    const unsigned int time = zet::getTimeTick() - profiler.m_Begin;
    const float used = static_cast<float>(std::clock() - profiler.m_Processor) / CLOCKS_PER_SEC;
    CCmdProfilerUsage usage;
    usage.m_Floats.push_back(time > 0 ? used / static_cast<float>(time) * 1000 : 0);
    usage.m_Values.push_back(time);
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
                control(*profiler, session, command);
        });
}

} // namespace arena::platform
