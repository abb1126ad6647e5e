// A command there and back through TLS 1.3, both ends on one core, compared with a bare GnuTLS loop.
#include "bench/support/processes.h"
#include "bench/support/rounds.h"
#include "bench/support/trips.h"

int main(int argc, char** argv)
{
    constexpr int kRoundTrips = 2000;
    constexpr char kName[] = "a small command there and back, TLS 1.3";
    bench::start(argc, argv);
    const bench::Identity identity;
    if (identity.chain().empty())
        bench::skip(kName, "the library was built without TLS");
    else
    {
        bench::pinToOne();
        bench::compareTrips(kName, {1, kRoundTrips, 1, 0, &identity}, bench::runBareTls);
    }
    return 0;
}
