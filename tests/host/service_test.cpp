#include "host/service.h"

#include "framework/log.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

int runWith(host::Service& service, std::vector<std::string> words)
{
    words.insert(words.begin(), "program");
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    return service.run(static_cast<int>(pointers.size()), pointers.data());
}

struct WithOptions
{
    WithOptions()
    {
        m_Service.option("--port", m_Port, "the port to listen on");
        m_Service.option("--level", m_Level, "the level");
        m_Service.option("--greeting", m_Greeting, "what clients read first");
        m_Service.option("--quiet", m_IsQuiet, "say nothing");
        m_Service.onStart(
            [this]
            {
                ++m_Starts;
                return m_IsGood;
            });
    }

    unsigned short m_Port = 8000;
    int m_Level = -2;
    zet::String_T<wchar_t> m_Greeting = L"hello";
    bool m_IsQuiet = false;
    bool m_IsGood = false;
    int m_Starts = 0;
    host::Service m_Service{L"zone", "Runs a zone of the game."};
};

constexpr char kHelp[] =
    "usage: zone [OPTION...]\n"
    "Runs a zone of the game.\n"
    "\n"
    "  --help                 print this text and end\n"
    "  --log-folder TEXT      the folder of the log files, instead of log/ beside the program\n"
    "  --port NUMBER          the port to listen on (8000)\n"
    "  --level NUMBER         the level (-2)\n"
    "  --greeting TEXT        what clients read first (hello)\n"
    "  --quiet                say nothing\n"
    "  --drain-time NUMBER    the milliseconds that open answers have at the end (10000)\n"
    "  --http-port NUMBER     the port of 127.0.0.1 for /metrics, /healthz, /readyz and pages: 0 for a "
    "free one, -1 for none (-1)\n"
    "  --proxy-from TEXT      expect a PROXY protocol header on each TCP connection, from these networks only\n"
    "  --record TEXT          a pcapng file for what the sockets carry, secrets masked\n"
    "  --record-size NUMBER   the MiB at which that file is renamed to FILE.1 and begun anew (64)\n"
    "  --record-files NUMBER  how many of these files are kept (4)\n";

TEST(Service, HelpTextIsMadeFromTheOptions)
{
    WithOptions with;
    CaptureStdout();
    EXPECT_EQ(runWith(with.m_Service, {"--help"}), host::kExitGood);
    EXPECT_EQ(GetCapturedStdout(), kHelp);
    EXPECT_EQ(with.m_Starts, 0);
}

TEST(Service, OptionsSetTheirVariables)
{
    WithOptions with;
    // The start fails on purpose, so that the service ends.
    EXPECT_EQ(
        runWith(with.m_Service, {"--port", "65535", "--level=-7", "--greeting=Gr\xC3\xBC\xC3\x9F dich", "--quiet"}),
        host::kExitFailed);
    EXPECT_EQ(with.m_Starts, 1);
    EXPECT_EQ(with.m_Port, 65535);
    EXPECT_EQ(with.m_Level, -7);
    EXPECT_EQ(with.m_Greeting, L"Gr\u00FC\u00DF dich");
    EXPECT_TRUE(with.m_IsQuiet);
}

TEST(Service, WrongCommandLineIsAUsageErrorWithoutAStart)
{
    const std::pair<std::vector<std::string>, std::string> lines[] = {
        {{"--prot", "1"}, "not a valid option: --prot"},
        {{"-p"}, "not a valid option: -p"},
        {{"--port"}, "--port needs a value"},
        {{"--port", "65536"}, "--port needs a number from 0 to 65535, not '65536'"},
        {{"--port", "80x"}, "--port needs a number from 0 to 65535, not '80x'"},
        {{"--port", ""}, "--port needs a number from 0 to 65535, not ''"},
        {{"--level", "2147483648"}, "--level needs a number from -2147483648 to 2147483647, not '2147483648'"},
        {{"--quiet=yes"}, "not a valid option: --quiet=yes"},
        {{"zone"}, "not an option: zone"},
        {{"--", "--quiet"}, "not an option: --quiet"},
    };
    for (const auto& [words, fault] : lines)
    {
        WithOptions with;
        CaptureStderr();
        EXPECT_EQ(runWith(with.m_Service, words), host::kExitUsage) << fault;
        EXPECT_EQ(GetCapturedStderr(), "zone: " + fault + "\n\n" + kHelp);
        EXPECT_EQ(with.m_Starts, 0);
    }
}

TEST(Service, StartThatFailsOrThrowsIsAFailure)
{
    for (const bool throws : {false, true})
    {
        test::LogLines lines;
        host::Service service(L"zone", "");
        service.onStart(
            [&]
            {
                if (throws)
                    throw std::runtime_error("no world");
                return false;
            });
        int stops = 0;
        service.onStop([&] { ++stops; });
        EXPECT_EQ(runWith(service, {}), host::kExitFailed);
        EXPECT_EQ(stops, 1);
        EXPECT_TRUE(lines.has(zet::Log::kError, L"The service zone cannot start"));
        EXPECT_FALSE(service.isReady());
    }
}

TEST(Service, BeginDrainEndsAServiceWithoutConnections)
{
    test::LogLines lines;
    host::Service service(L"zone", "");
    service.setDrainTime(std::chrono::milliseconds(1234));
    std::string notes;
    bool isReadyAtStart = true;
    service.onStart(
        [&]
        {
            isReadyAtStart = service.isReady();
            return true;
        });
    service.addReadyCheck([&] { return notes.empty(); });

    // The drain begins in the second tick.
    class Ender : public zet::System::Task
    {
    public:
        explicit Ender(host::Service& service) : m_Service(service) {}
        void onTick(unsigned int) override
        {
            m_WasReady = m_WasReady || m_Service.isReady();
            if (++m_Ticks == 2)
                m_Service.beginDrain();
        }
        host::Service& m_Service;
        int m_Ticks = 0;
        bool m_WasReady = false;
    } ender(service);
    service.onStart([&] { return ender.start(&service.getSystem()); });
    service.onDrain([&] { notes += service.isReady() ? "ready " : "drain "; });
    int busy = 3;
    service.onBusy([&] { return busy-- > 0; });
    service.onStop([&] { notes += "stop"; });
    EXPECT_EQ(runWith(service, {}), host::kExitGood);
    EXPECT_FALSE(isReadyAtStart);
    EXPECT_TRUE(ender.m_WasReady);
    EXPECT_TRUE(service.isDraining());
    EXPECT_FALSE(service.isReady());
    EXPECT_LE(busy, 0);
    EXPECT_EQ(notes, "drain stop");
    const auto texts = lines.texts();
    const std::vector<std::wstring> expected = {L"Service On...", L"Draining for at most 1234 ms", L"Service Off..."};
    EXPECT_EQ(texts, expected);
}

} // namespace
