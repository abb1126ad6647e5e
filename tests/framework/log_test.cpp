#include "framework/log.h"

#include "framework/exception.h"
#include "framework/log_module.h"
#include "framework/quillo/app_log.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

using zet::Log;

namespace
{

using Lines = std::vector<std::pair<Log::Level, std::wstring>>;

// Collects log lines during its lifetime.
class Listener
{
public:
    Listener()
        : m_Number(Log::addSink([this](Log::Level level, const zet::String_T<wchar_t>& line)
                                { m_Lines.emplace_back(level, line.getBuffer()); }))
    {
    }
    ~Listener() { Log::removeSink(m_Number); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    Lines m_Lines;

private:
    int m_Number;
};

// A log module in the test itself, which records its calls. A module stays for the rest of the process.
std::vector<std::wstring>& notes()
{
    static std::vector<std::wstring> list;
    return list;
}

const zet::LogModule kNotingModule = {
    zet::LogModule::kVersion,
    L"NotingLog",
    [](const wchar_t* name, const wchar_t* value) { notes().push_back(L"param " + std::wstring(name) + L"=" + value); },
    [] { notes().emplace_back(L"start"); },
    [] { notes().emplace_back(L"stop"); },
    [](long long, int level, const wchar_t* line, int length)
    { notes().push_back(L"line " + std::to_wstring(level) + L" " + std::wstring(line, static_cast<size_t>(length))); },
    [](int on) { notes().push_back(L"whistle " + std::to_wstring(on)); },
    []() -> const wchar_t* { return nullptr; }};

} // namespace

TEST(Log, LinesReachTheSinkWithTheirLevels)
{
    Listener listener;
    Log::message(L"login %s %d", L"\u4E2D", 5);
    Log::warning(L"plain");
    Log::error(L"%d%%", 100);
    ASSERT_EQ(listener.m_Lines.size(), 3u);
    EXPECT_EQ(listener.m_Lines[0], (std::pair(Log::kMessage, std::wstring(L"login \u4E2D 5"))));
    EXPECT_EQ(listener.m_Lines[1], (std::pair(Log::kWarning, std::wstring(L"plain"))));
    EXPECT_EQ(listener.m_Lines[2], (std::pair(Log::kError, std::wstring(L"100%"))));
}

TEST(Log, RemovedSinkGetsNothing)
{
    int count = 0;
    const int number = Log::addSink([&](Log::Level, const zet::String_T<wchar_t>&) { ++count; });
    EXPECT_TRUE(Log::isWanted());
    Log::message(L"one");
    Log::removeSink(number);
    Log::removeSink(number);
    Log::message(L"two");
    EXPECT_EQ(count, 1);
}

TEST(Log, LineFromInsideASinkIsDropped)
{
    int count = 0;
    const int number = Log::addSink(
        [&](Log::Level, const zet::String_T<wchar_t>&)
        {
            ++count;
            Log::error(L"again");
            Log::whistle(false);
        });
    Log::message(L"one");
    Log::removeSink(number);
    EXPECT_EQ(count, 1);
}

TEST(Log, LinesOfAllThreadsComeOneAtATime)
{
    std::vector<std::wstring> lines;
    const int number =
        Log::addSink([&](Log::Level, const zet::String_T<wchar_t>& line) { lines.emplace_back(line.getBuffer()); });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
    {
        threads.emplace_back(
            [i]
            {
                for (int round = 0; round < 250; ++round)
                    Log::message(L"thread %d round %d", i, round);
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    Log::removeSink(number);
    EXPECT_EQ(lines.size(), 1000u);
}

TEST(Log, ExceptionReportsItsTextAndPlace)
{
    Listener listener;
    const zet::Exception exception(L"Uuid::operator >>", "stream.cpp", 42);
    exception.report();
    ASSERT_EQ(listener.m_Lines.size(), 1u);
    EXPECT_EQ(listener.m_Lines[0].first, Log::kError);
    EXPECT_EQ(listener.m_Lines[0].second, L"Uuid::operator >> (stream.cpp:42)");
    EXPECT_EQ(std::string(exception.what()), "Uuid::operator >>");
}

TEST(Log, ModuleIsStartedFedAndStopped)
{
    notes().clear();
    Log::setparam(L"NotingLog@path=D:/svr/log/");
    Log::setparam(L"OtherLog@path=elsewhere");
    Log::setparam(L"NotingLog@path=D:/svr/log/game/");
    Log::setparam(L"no parameter");
    EXPECT_TRUE(zet::registerLogModule(&kNotingModule));
    Log::message(L"before start");
    Log::whistle(false);
    EXPECT_TRUE(Log::start());
    EXPECT_TRUE(Log::start());
    EXPECT_TRUE(Log::isWanted());
    EXPECT_TRUE(zet::registerLogModule(&kNotingModule));
    Log::warning(L"while %s", L"on");
    Log::whistle(false);
    Log::whistle(true);
    Log::setparam(L"NotingLog@level=");
    Log::stop();
    Log::stop();
    Log::message(L"behind stop");
    EXPECT_EQ(notes(), (std::vector<std::wstring>{L"param path=D:/svr/log/game/", L"start", L"line 1 while on",
                                                  L"whistle 0", L"whistle 1", L"param level=", L"stop"}));
}

TEST(Log, ModuleOfAnotherVersionIsRefused)
{
    zet::LogModule foreign = kNotingModule;
    foreign.m_Version = zet::LogModule::kVersion + 1;
    EXPECT_FALSE(zet::registerLogModule(&foreign));
    EXPECT_FALSE(zet::registerLogModule(nullptr));
}

TEST(AppLog, LinesGoToTheEnginesOwnSink)
{
    Listener listener;
    std::vector<std::wstring> lines;
    Quillo::appLog(L"dropped");
    Quillo::setAppLogSink([&](const zet::String_T<wchar_t>& line) { lines.emplace_back(line.getBuffer()); });
    Quillo::appLog(L"proxy %s:%d", L"10.0.0.1", 1080);
    Quillo::setAppLogSink(nullptr);
    Quillo::appLog(L"dropped");
    EXPECT_EQ(lines, (std::vector<std::wstring>{L"proxy 10.0.0.1:1080"}));
    EXPECT_TRUE(listener.m_Lines.empty());
}
