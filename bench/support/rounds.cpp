#include "bench/support/rounds.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace bench
{

namespace
{

constexpr int kRounds = 15;
constexpr double kRoundSeconds = 0.03;

bool g_IsJson = false;

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Of processor time, which other programs on the machine take none of.
double secondsOf(const std::function<void()>& work, int times)
{
    const double start = processorSeconds();
    for (int i = 0; i < times; ++i)
        work();
    return processorSeconds() - start;
}

int timesFor(const std::function<void()>& work)
{
    int times = 1;
    while (secondsOf(work, times) < kRoundSeconds / 4)
        times *= 2;
    return std::max(1, static_cast<int>(times * kRoundSeconds / std::max(secondsOf(work, times), 1e-9)));
}

double least(const std::vector<double>& values)
{
    return *std::min_element(values.begin(), values.end());
}

double most(const std::vector<double>& values)
{
    return *std::max_element(values.begin(), values.end());
}

} // namespace

std::vector<std::string> start(int argc, char** argv)
{
    std::vector<std::string> others;
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--json") == 0)
            g_IsJson = true;
        else
            others.emplace_back(argv[i]);
    return others;
}

void print(const Row& row)
{
    const std::vector<double>& spread = row.m_Floor.empty() ? row.m_Own : row.m_Ratios;
    if (g_IsJson)
    {
        std::printf("{\"name\":\"%s\",\"unit\":\"%s\",\"own\":%.6g", row.m_Name.c_str(), row.m_Unit.c_str(),
                    median(row.m_Own));
        if (!row.m_Floor.empty())
            std::printf(",\"floor\":%.6g,\"ratio\":%.6g", median(row.m_Floor), median(row.m_Ratios));
        std::printf(",\"least\":%.6g,\"most\":%.6g}\n", least(spread), most(spread));
    }
    else
    {
        std::printf("%-52s %10.1f %-5s", row.m_Name.c_str(), median(row.m_Own), row.m_Unit.c_str());
        if (!row.m_Floor.empty())
            std::printf(" floor %10.1f   ratio %.2f", median(row.m_Floor), median(row.m_Ratios));
        std::printf("   (%.2f to %.2f)\n", least(spread), most(spread));
    }
    std::fflush(stdout);
}

void note(const std::string& text)
{
    if (!g_IsJson)
        std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

void skip(const std::string& name, const std::string& reason)
{
    std::printf(g_IsJson ? "{\"name\":\"%s\",\"skipped\":\"%s\"}\n" : "%-52s skipped: %s\n", name.c_str(),
                reason.c_str());
    std::fflush(stdout);
}

double secondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double processorSecondsOf(const std::function<void()>& work)
{
    return secondsOf(work, 1);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

void compare(const std::string& what, int calls, const std::function<void()>& thing, const std::function<void()>& floor)
{
    const int times = timesFor(thing);
    const int floorTimes = timesFor(floor);
    Row row{what, "ns", {}, {}, {}};
    for (int round = 0; round < kRounds; ++round)
    {
        row.m_Own.push_back(secondsOf(thing, times) / times / calls * 1e9);
        row.m_Floor.push_back(secondsOf(floor, floorTimes) / floorTimes / calls * 1e9);
        row.m_Ratios.push_back(row.m_Own.back() / row.m_Floor.back());
    }
    print(row);
}

std::vector<double> measure(const std::string& what, int calls, const std::function<void()>& thing)
{
    const int times = timesFor(thing);
    Row row{what, "ns", {}, {}, {}};
    for (int round = 0; round < kRounds; ++round)
        row.m_Own.push_back(secondsOf(thing, times) / times / calls * 1e9);
    print(row);
    return row.m_Own;
}

void measureRate(const std::string& what, size_t bytes, const std::function<void()>& thing)
{
    const int times = timesFor(thing);
    Row row{what, "MB/s", {}, {}, {}};
    for (int round = 0; round < kRounds; ++round)
        row.m_Own.push_back(static_cast<double>(bytes) * times / secondsOf(thing, times) / 1e6);
    print(row);
}

} // namespace bench
