#include "bench/support/rounds.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace bench
{

namespace
{

constexpr int kRounds = 15;
constexpr double kRoundSeconds = 0.03;

double secondsOf(const std::function<void()>& work, int times)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < times; ++i)
        work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int timesFor(const std::function<void()>& work)
{
    int times = 1;
    while (secondsOf(work, times) < kRoundSeconds / 4)
        times *= 2;
    return std::max(1, static_cast<int>(times * kRoundSeconds / std::max(secondsOf(work, times), 1e-9)));
}

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

Measured compare(const std::string& what, int calls, const std::function<void()>& thing,
                 const std::function<void()>& floor)
{
    const int times = timesFor(thing);
    const int floorTimes = timesFor(floor);
    std::vector<double> own;
    std::vector<double> floors;
    std::vector<double> ratios;
    for (int round = 0; round < kRounds; ++round)
    {
        own.push_back(secondsOf(thing, times) / times / calls * 1e9);
        floors.push_back(secondsOf(floor, floorTimes) / floorTimes / calls * 1e9);
        ratios.push_back(own.back() / floors.back());
    }
    const Measured measured{median(own), median(floors), median(ratios)};
    std::printf("%-44s %10.1f ns   floor %10.1f ns   ratio %.2f\n", what.c_str(), measured.m_Nanoseconds,
                measured.m_FloorNanoseconds, measured.m_Ratio);
    std::fflush(stdout);
    return measured;
}

double measure(const std::string& what, int calls, const std::function<void()>& thing)
{
    const int times = timesFor(thing);
    std::vector<double> own(kRounds);
    for (double& round : own)
        round = secondsOf(thing, times) / times / calls * 1e9;
    std::printf("%-44s %10.1f ns\n", what.c_str(), median(own));
    std::fflush(stdout);
    return median(own);
}

} // namespace bench
