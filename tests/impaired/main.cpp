// Commands over bad networks: sends fixed numbers of commands over TCP, TLS and UDP through links that drop, delay,
// reorder and duplicate packets, checks that each arrives once and in order, and prints the times. Started by
// scripts/impaired, which creates the two network namespaces; no packet leaves them.
#include "tests/impaired/link.h"
#include "tests/impaired/talk.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace
{

using namespace impaired;

constexpr Transport kTransports[] = {Transport::kTcp, Transport::kTls, Transport::kUdp};
constexpr size_t kTransportCount = std::size(kTransports);

// Loss, delay, jitter, packets held back (percent and time), duplicates.
constexpr Profile kProfiles[] = {
    {"clean"},
    {"delay 5 ms", 0, 5},
    {"delay 20 ms", 0, 20},
    {"delay 50 ms", 0, 50},
    {"delay 100 ms", 0, 100},
    {"loss 1 %", 1},
    {"loss 5 %", 5},
    {"loss 20 %", 20},
    {"loss 5 %, delay 20 ms", 5, 20},
    {"loss 5 %, delay 50 ms", 5, 50},
    {"loss 5 %, delay 100 ms", 5, 100},
    {"loss 20 %, delay 20 ms", 20, 20},
    {"loss 20 %, delay 50 ms", 20, 50},
    {"loss 20 %, delay 100 ms", 20, 100},
    {"reordered 10 %", 0, 10, 0, 10, 10},
    {"reordered 30 %, delay 20 ms", 0, 20, 0, 30, 15},
    {"jitter 10 of 20 ms", 0, 20, 10},
    {"jitter 40 of 50 ms", 0, 50, 40},
    {"doubled 10 %", 0, 5, 0, 0, 0, 10},
    {"doubled 50 %", 0, 5, 0, 0, 0, 50},
    {"loss 5 %, reordered 10 %", 5, 20, 0, 10, 10},
    {"loss 5 %, doubled 10 %", 5, 20, 0, 0, 0, 10},
    {"reordered 20 %, doubled 20 %", 0, 20, 5, 20, 15, 20},
    {"all at once", 5, 50, 10, 10, 20, 10},
};
constexpr Profile kShortProfiles[] = {
    {"clean"},
    {"loss 5 %, delay 5 ms", 5, 5},
    {"reordered 20 %, doubled 20 %", 0, 5, 2, 20, 5, 20},
};

// A runner's result for its profile, as it is sent through a pipe.
struct Cell
{
    char m_Fault[96];
    int m_IsThere;
    double m_Begin;
    double m_Median;
    double m_High;
    double m_Throughput;
};
struct Row
{
    Cell m_Cells[kTransportCount];
    Counts m_Counts;
};

struct Options
{
    std::string m_First;
    std::string m_Second;
    bool m_IsShort = false;
    unsigned long m_Seed = 1;
    size_t m_Jobs = 4;
};

struct Pipe
{
    Pipe()
    {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        m_Out = ends[0];
        m_In = ends[1];
    }
    ~Pipe()
    {
        close(m_Out);
        close(m_In);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    template <class T>
    void put(const T& value)
    {
        if (write(m_In, &value, sizeof value) != static_cast<ssize_t>(sizeof value))
            throw std::runtime_error("a pipe is broken");
    }
    // False if nothing arrives in time.
    template <class T>
    bool get(T& value, int milliseconds)
    {
        pollfd wait{m_Out, POLLIN, 0};
        return poll(&wait, 1, milliseconds) > 0 && read(m_Out, &value, sizeof value) == sizeof value;
    }

    int m_Out;
    int m_In;
};

// Runs a task in its own process, which ends with this one. Its exit code is 0 if the task returned true.
pid_t fork(const std::function<bool()>& task)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    bool isGood = false;
    try
    {
        isGood = task();
    }
    catch (const std::exception& fault)
    {
        std::fprintf(stderr, "%s\n", fault.what());
    }
    std::fflush(nullptr);
    _exit(isGood ? 0 : 1);
}

bool waitFor(pid_t child)
{
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

Cell cellOf(const Outcome& outcome)
{
    Cell cell{};
    std::strncpy(cell.m_Fault, outcome.m_Fault.c_str(), sizeof cell.m_Fault - 1);
    cell.m_IsThere = 1;
    cell.m_Begin = outcome.m_Begin;
    cell.m_Median = outcome.m_Median;
    cell.m_High = outcome.m_High;
    cell.m_Throughput = outcome.m_Throughput;
    return cell;
}

Cell faultOf(const char* text)
{
    Outcome outcome;
    outcome.m_Fault = text;
    return cellOf(outcome);
}

Cell talk(const Options& options, const Secrets& secrets, const Plan& plan, int number, Transport transport)
{
    Pipe port;
    Pipe stop;
    Pipe result;
    const pid_t server = fork(
        [&]
        {
            enterNamespace(options.m_Second);
            return serve(transport, secrets, port.m_In, stop.m_Out);
        });
    unsigned short chosen = 0;
    Cell cell = faultOf("the server does not listen");
    if (port.get(chosen, 10000))
    {
        const pid_t client = fork(
            [&]
            {
                enterNamespace(options.m_First);
                result.put(cellOf(ask(transport, secrets, addressOf(number, 2), chosen, plan)));
                return true;
            });
        if (!result.get(cell, plan.m_TimeLimit + 10000))
        {
            cell = faultOf("the client does not end");
            kill(client, SIGKILL);
        }
        waitFor(client);
    }
    stop.put('.');
    if (!waitFor(server) && !cell.m_Fault[0])
        cell = faultOf("the server did not get all in order");
    return cell;
}

Row run(const Options& options, const Secrets& secrets, const Plan& plan, int number, const Profile& profile)
{
    Row row{};
    Pipe ready;
    Pipe stop;
    Pipe counts;
    const pid_t road = fork(
        [&]
        {
            Link link(options.m_First, options.m_Second, number, profile, options.m_Seed + 2UL * number);
            ready.put('.');
            counts.put(link.run(stop.m_Out));
            return true;
        });
    char dot;
    const bool isUp = ready.get(dot, 10000);
    for (size_t i = 0; i < kTransportCount; ++i)
        if (isThere(kTransports[i]))
            row.m_Cells[i] = isUp ? talk(options, secrets, plan, number, kTransports[i]) : faultOf("no road");
    if (isUp)
    {
        stop.put('.');
        counts.get(row.m_Counts, 10000);
    }
    waitFor(road);
    return row;
}

void printHead()
{
    std::printf("%-29s", "");
    for (const Transport transport : kTransports)
        std::printf("| %-34s", nameOf(transport));
    std::printf("|  packets\n%-29s", "profile");
    for (size_t i = 0; i < kTransportCount; ++i)
        std::printf("| %7s %8s %8s %8s", "begin", "median", "99th", "kB/s");
    std::printf("| %8s %6s %6s %6s\n", "passed", "lost", "double", "held");
}

// A link that should have affected packets, often enough for chance not to matter, but affected none, is broken.
bool isKept(double percent, long done, long passed)
{
    constexpr double kCertain = 20;
    return done > 0 || percent * static_cast<double>(passed) / 100 < kCertain;
}

// Whether everything succeeded.
bool print(const Profile& profile, const Row& row)
{
    bool isGood = true;
    std::printf("%-29s", profile.m_Name);
    for (const Cell& cell : row.m_Cells)
    {
        if (!cell.m_IsThere)
            std::printf("| %-34s", "-");
        else if (cell.m_Fault[0])
            std::printf("| %-34s", cell.m_Fault);
        else
            std::printf("| %7.1f %8.2f %8.2f %8.1f", cell.m_Begin, cell.m_Median, cell.m_High, cell.m_Throughput);
        isGood = isGood && !cell.m_Fault[0];
    }
    std::printf("| %8ld %6ld %6ld %6ld\n", row.m_Counts.m_Passed, row.m_Counts.m_Lost, row.m_Counts.m_Doubled,
                row.m_Counts.m_HeldBack);
    const Counts& counts = row.m_Counts;
    if (counts.m_Passed > 0 && isKept(profile.m_LossPercent, counts.m_Lost, counts.m_Passed) &&
        isKept(profile.m_DuplicatePercent, counts.m_Doubled, counts.m_Passed) &&
        isKept(profile.m_ReorderPercent, counts.m_HeldBack, counts.m_Passed))
        return isGood;
    std::printf("    the road did not do what the profile says\n");
    return false;
}

bool runAll(const Options& options, const Profile* profiles, size_t count)
{
    const test::Authority authority("Impaired Networks");
    test::CertificateWish wish{"impaired", {}};
    for (size_t number = 1; number <= count; ++number)
        wish.m_Hosts.push_back(addressOf(static_cast<int>(number), 2));
    const Secrets secrets{authority.issue(wish), authority.pem()};
    const Plan plan = options.m_IsShort ? Plan{.m_Singles = 10, .m_Streamed = 40, .m_TimeLimit = 20000}
                                        : Plan{.m_Singles = 40, .m_Streamed = 200, .m_TimeLimit = 60000};
    std::printf("%d commands of %d bytes one at a time, then %d of %d with %d on their way; times in ms, there and "
                "back; seed %lu\n\n",
                plan.m_Singles, plan.m_SingleBytes, plan.m_Streamed, plan.m_StreamedBytes, plan.m_Window,
                options.m_Seed);
    printHead();
    bool isGood = true;
    std::vector<std::pair<pid_t, std::unique_ptr<Pipe>>> runners;
    for (size_t done = 0; done < count; ++done)
    {
        while (runners.size() < count && runners.size() < done + options.m_Jobs)
        {
            auto result = std::make_unique<Pipe>();
            const int number = static_cast<int>(runners.size());
            const pid_t runner = fork(
                [&]
                {
                    result->put(run(options, secrets, plan, number + 1, profiles[number]));
                    return true;
                });
            runners.emplace_back(runner, std::move(result));
        }
        Row row{};
        const int most = static_cast<int>(kTransportCount) * (plan.m_TimeLimit + 30000);
        if (!runners[done].second->get(row, most))
            row.m_Cells[0] = faultOf("the runner does not end");
        isGood = print(profiles[done], row) && isGood;
        std::fflush(stdout);
        waitFor(runners[done].first);
    }
    std::printf("\n%s\n",
                isGood ? "Every command arrived once and in order." : "Not every command arrived as it should.");
    return isGood;
}

} // namespace

int main(int count, char** words)
{
    Options options;
    std::vector<std::string> names;
    for (int i = 1; i < count; ++i)
    {
        const std::string word = words[i];
        if (word == "--short")
            options.m_IsShort = true;
        else if (word == "--seed" && i + 1 < count)
            options.m_Seed = std::strtoul(words[++i], nullptr, 10);
        else if (word == "--jobs" && i + 1 < count)
            options.m_Jobs = std::strtoul(words[++i], nullptr, 10);
        else
            names.push_back(word);
    }
    if (names.size() != 2 || options.m_Jobs == 0)
    {
        std::fprintf(stderr, "usage: impaired_networks NAMESPACE NAMESPACE [--short] [--seed N] [--jobs N]\n");
        return 2;
    }
    options.m_First = names[0];
    options.m_Second = names[1];
    return (options.m_IsShort ? runAll(options, kShortProfiles, std::size(kShortProfiles))
                              : runAll(options, kProfiles, std::size(kProfiles)))
               ? 0
               : 1;
}
