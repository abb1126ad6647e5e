// Commands over the loopback compared with loops by hand over the same packets. Two processes, once on one core and
// once where the scheduler puts them: round trips small and large, and one way at full speed.
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "bench/support/trips.h"

#include <unistd.h>

namespace
{

constexpr int kRoundTrips = 3000;
constexpr int kLargeTrips = 500;
constexpr int kLarge = 60 * 1024;
constexpr int kOneWay = 300000;
// Commands that the sender queues before a tick sends them.
constexpr int kBatch = 2000;

void compareAll(const char* where)
{
    const std::string end = std::string(", ") + where;
    bench::compareTrips(("a small command there and back" + end).c_str(), {1, kRoundTrips, 1}, bench::runBare);
    bench::compareTrips(("small commands one way" + end).c_str(), {kOneWay, kOneWay, kBatch}, bench::runByHand);
    bench::compareTrips(("60 KiB there and back" + end).c_str(), {1, kLargeTrips, 1, kLarge}, bench::runBare);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    bench::pinToOne();
    compareAll("one core");
    if (sysconf(_SC_NPROCESSORS_ONLN) > 1)
    {
        bench::unpin();
        compareAll("any core");
    }
    return 0;
}
