#include "host/service.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/platform/requests.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "host/inner/service_parts.h"
#include "net/inner/guard.h"
#include "net/inner/reactor.h"
#include "net/tcp/server.h"
#include "runtime/service_system.h"
#include "transport/framework_server_socket.h"

#include <algorithm>
#include <cstdio>

namespace host
{

namespace
{

constexpr const wchar_t* kRecordingName = L"recording.pcapng";

// False if the callable returns false or throws.
bool isTrue(const wchar_t* where, const std::function<bool()>& call)
{
    bool result = false;
    zet::inner::guard(where, nullptr, [&] { result = call(); });
    return result;
}

} // namespace

// The required frame of a server process, with what the service adds.
class Service::Frame final : public CMyServiceSystem
{
public:
    Frame(inner::ServiceParts& parts, unsigned char serverType) : CMyServiceSystem(serverType), m_Parts(parts) {}

    bool ServiceOn() override
    {
        if (!CMyServiceSystem::ServiceOn() || !m_Parts.startHttp(*this) ||
            (!m_Parts.m_RecordPath.isEmpty() && !startRecording()))
            return false;
        // A callable may add others: copies, by number.
        for (size_t i = 0; i < m_Parts.m_Start.size(); ++i)
            if (!isTrue(L"onStart()", std::function<bool()>(m_Parts.m_Start[i])))
            {
                zet::Log::error(L"The service %s cannot start", getSystemName());
                return false;
            }
        m_Parts.m_IsStarted = true;
        m_Parts.m_Manager.report("READY=1");
        return true;
    }
    void ServiceOff() override
    {
        m_Parts.m_IsStarted = false;
        for (size_t i = 0; i < m_Parts.m_Stop.size(); ++i)
            zet::inner::guard(L"onStop()", nullptr, std::function<void()>(m_Parts.m_Stop[i]));
        m_Parts.stopHttp();
        m_Parts.m_Recording.stop();
        CMyServiceSystem::ServiceOff();
    }
    void tick() override
    {
        if (isTicking())
            return;
        if (zet::platform::isEndRequested())
            beginDrain();
        if (zet::platform::takeReloadRequest())
            reload();
        switch (zet::platform::takeRecordRequest())
        {
        case zet::platform::RecordRequest::kStart:
            startRecording();
            break;
        case zet::platform::RecordRequest::kStop:
            m_Parts.m_Recording.stop();
            break;
        case zet::platform::RecordRequest::kNone:
            break;
        }
        m_Parts.m_Manager.tick(zet::getTimeTick());
        m_Parts.m_Figures.beginTick();
        if (m_Parts.m_Metrics.isOn())
            tickMeasured();
        else
            CMyServiceSystem::tick();
        if (m_Parts.m_Drain.isBegun() && !isShutdown() && m_Parts.m_Drain.step(*this, zet::getTimeTick()))
            shutdown();
        // Also with a longer interval between ticks the watchdog is fed, and a drain ends in time.
        if (m_Parts.m_Manager.isWatched() || m_Parts.m_Drain.isBegun())
            tickBy(zet::getTimeTick() + kTickInterval);
    }

    void beginDrain()
    {
        if (m_Parts.m_Drain.isBegun())
            return;
        zet::Log::message(L"Draining for at most %d ms", m_Parts.m_DrainTime);
        m_Parts.m_Manager.report("STOPPING=1");
        m_Parts.m_Drain.begin(zet::getTimeTick(), static_cast<unsigned int>(m_Parts.m_DrainTime));
        for (size_t i = 0; i < m_Parts.m_OnDrain.size(); ++i)
            zet::inner::guard(L"onDrain()", nullptr, std::function<void()>(m_Parts.m_OnDrain[i]));
        m_Parts.m_Drain.stopAccepting();
    }

protected:
    bool init() override
    {
        if (!CMyServiceSystem::init())
            return false;
        if (!m_Parts.m_LogFolder.isEmpty())
            openLog();
        return true;
    }

private:
    void tickMeasured()
    {
        constexpr double kNanosecond = 1e-9;
        constexpr unsigned long long kPlanned = kTickInterval * 1000000ULL;
        const unsigned long long begin = zet::platform::getMonotonicNanoseconds();
        const unsigned long long gap = m_LastBegin == 0 ? 0 : begin - m_LastBegin;
        m_LastBegin = begin;
        CMyServiceSystem::tick();
        m_Parts.m_Metrics.addTick(static_cast<double>(zet::platform::getMonotonicNanoseconds() - begin) * kNanosecond,
                                  gap > kPlanned ? static_cast<double>(gap - kPlanned) * kNanosecond : 0);
    }
    // To the file of --record, or to one beside the log files.
    bool startRecording()
    {
        zet::String_T<wchar_t> path = m_Parts.m_RecordPath;
        if (path.isEmpty())
            path = (m_Parts.m_LogFolder.isEmpty() ? getLogFolder() : m_Parts.m_LogFolder) + kRecordingName;
        return m_Parts.m_Recording.start(*this, path.getBuffer());
    }
    // Closes the log file, if it is open; the next line opens it.
    void openLog() const
    {
        const zet::String_T<wchar_t>& own = m_Parts.m_LogFolder;
        zet::Log::setparam(zet::String_T<wchar_t>(L"FileLog@path=") + (own.isEmpty() ? getLogFolder() : own));
    }
    void reload()
    {
        // A manager that has been sent the end is sent no other state.
        const bool isReported = !m_Parts.m_Drain.isBegun();
        if (isReported)
            m_Parts.m_Manager.reportReloading();
        openLog();
        int failed = 0;
        const size_t count = m_Parts.m_Reload.size();
        for (size_t i = 0; i < count; ++i)
            failed += !isTrue(L"onReload()", std::function<bool()>(m_Parts.m_Reload[i]));
        if (failed > 0)
            zet::Log::error(L"Reloaded, but %d of %d parts stay as they were", failed, static_cast<int>(count));
        else
            zet::Log::message(L"Reloaded");
        if (isReported)
            m_Parts.m_Manager.report("READY=1");
    }

    inner::ServiceParts& m_Parts;
    // By getMonotonicNanoseconds(); 0 before the first tick.
    unsigned long long m_LastBegin = 0;
};

Service::Service(const wchar_t* name, const char* about, unsigned char serverType)
    : m_Parts(std::make_unique<inner::ServiceParts>()), m_Frame(new Frame(*m_Parts, serverType))
{
    m_Frame->setSystemName(name);
    m_Parts->m_About = about;
    setDrainTime(kDefaultDrainTime);
    addOption("--help", &m_Parts->m_WantsHelp, "print this text and end");
    addOption("--log-folder", &m_Parts->m_LogFolder, "the folder of the log files, instead of log/ beside the program");
}

Service::~Service() = default;

void Service::addOption(const char* name, OptionTarget target, const char* help)
{
    m_Parts->m_Options.add(name, target, help);
}

zet::String_T<char> Service::getHelp() const
{
    const std::string text = std::string("usage: ") +
                             zet::StringHelper::wideToUtf8(m_Frame->getSystemName()).getBuffer() + " [OPTION...]\n" +
                             m_Parts->m_About + "\n\n" + m_Parts->m_Options.getHelp();
    return {text.data(), static_cast<int>(text.size())};
}

void Service::onStart(std::function<bool()> start)
{
    m_Parts->m_Start.push_back(std::move(start));
}

void Service::onReload(std::function<bool()> reload)
{
    m_Parts->m_Reload.push_back(std::move(reload));
}

void Service::onDrain(std::function<void()> drain)
{
    m_Parts->m_OnDrain.push_back(std::move(drain));
}

void Service::onStop(std::function<void()> stop)
{
    m_Parts->m_Stop.push_back(std::move(stop));
}

void Service::serve(CFrameworkServerSocket& server, std::function<bool(CFrameworkClientSocket&)> isAnswered)
{
    m_Parts->m_Drain.m_Tcp.push_back({&server, std::move(isAnswered)});
    onReload([&server] { return server.ReloadAddressFiles(); });
    // Before run() the networks are not known yet.
    m_Parts->expectProxy(server);
}

void Service::serve(UdpServerSocket& server, std::function<bool(UdpClientSocket&)> isAnswered)
{
    m_Parts->m_Drain.m_Udp.push_back({&server, std::move(isAnswered)});
}

void Service::await(const Questions& questions)
{
    m_Parts->m_Drain.m_Questions.push_back(&questions);
}

void Service::onBusy(std::function<bool()> isBusy)
{
    m_Parts->m_Drain.m_Busy.push_back(std::move(isBusy));
}

void Service::useTls(zet::TlsContext& context)
{
    onReload([held = zet::Unknown::Handle_T<zet::TlsContext>(&context)] { return held->reload(); });
}

void Service::setDrainTime(std::chrono::milliseconds time)
{
    constexpr long long kMost = 24LL * 60 * 60 * 1000;
    m_Parts->m_DrainTime = static_cast<int>(std::clamp<long long>(time.count(), 0, kMost));
}

bool Service::isReady() const
{
    return m_Parts->isReady();
}

void Service::addReadyCheck(std::function<bool()> isReady)
{
    m_Parts->m_ReadyChecks.push_back(std::move(isReady));
}

bool Service::isDraining() const
{
    return m_Parts->m_Drain.isBegun();
}

void Service::beginDrain()
{
    m_Frame->beginDrain();
}

void Service::setHttpPort(int port)
{
    m_Parts->m_HttpPort = port;
}

void Service::allowHttpHost(const char* name)
{
    m_Parts->m_HttpHosts.emplace_back(name);
}

void Service::addPage(std::string_view path, std::string_view type, std::string_view text)
{
    m_Parts->m_Pages.push_back({path, type, text});
}

void Service::addEvent(const char* name, std::function<std::string()> text)
{
    m_Parts->m_Events.add(name, std::move(text));
}

Metrics& Service::getMetrics() const
{
    return m_Parts->m_Metrics;
}

Recording& Service::getRecording() const
{
    return m_Parts->m_Recording;
}

zet::System& Service::getSystem() const
{
    return *m_Frame;
}

int Service::run(int count, char** words)
{
    addOption("--drain-time", &m_Parts->m_DrainTime, "the milliseconds that open answers have at the end");
    std::string httpHelp = "the port of ";
    httpHelp += inner::HttpServer::kAddress;
    httpHelp += " for /metrics, /healthz, /readyz and pages: 0 for a free one, -1 for none";
    addOption("--http-port", &m_Parts->m_HttpPort, httpHelp.c_str());
    addOption("--proxy-from", &m_Parts->m_ProxyFrom,
              "expect a PROXY protocol header on each TCP connection, from these networks only");
    addOption("--record", &m_Parts->m_RecordPath, "a pcapng file for what the sockets carry, secrets masked");
    addOption("--record-size", &m_Parts->m_RecordSize,
              "the MiB at which that file is renamed to FILE.1 and begun anew");
    addOption("--record-files", &m_Parts->m_RecordFiles, "how many of these files are kept");
    std::string fault = m_Parts->m_Options.parse(count, words);
    if (fault.empty() && !m_Parts->hasValidProxies())
        fault = "--proxy-from needs networks such as 10.0.0.0/8, with blanks between them";
    if (!fault.empty())
    {
        std::fprintf(stderr, "%s: %s\n\n%s", zet::StringHelper::wideToUtf8(m_Frame->getSystemName()).getBuffer(),
                     fault.c_str(), getHelp().getBuffer());
        return kExitUsage;
    }
    if (m_Parts->m_WantsHelp)
    {
        std::fputs(getHelp().getBuffer(), stdout);
        return kExitGood;
    }
    for (const auto& served : m_Parts->m_Drain.m_Tcp)
        m_Parts->expectProxy(*served.m_Server);
    setDrainTime(std::chrono::milliseconds(m_Parts->m_DrainTime));
    m_Parts->m_Recording.setLimits(static_cast<long long>(m_Parts->m_RecordSize) * Recording::kMebibyte,
                                   m_Parts->m_RecordFiles);
    if (m_Parts->m_HttpPort != kNoHttp)
        m_Parts->m_Metrics.setOn(true);
    // With a reactor, wake() is one atomic exchange and one write, which a signal handler may do.
    zet::System* const system = m_Frame;
    if (!zet::inner::Reactor::of(system) ||
        !zet::platform::beginRequests([](void* woken) { static_cast<zet::System*>(woken)->wake(); }, system,
                                      kExitAtOnce))
        return kExitFailed;
    const bool isGood = m_Frame->run();
    zet::platform::endRequests();
    return isGood ? kExitGood : kExitFailed;
}

} // namespace host
