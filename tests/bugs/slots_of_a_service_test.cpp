// exit() of a service was five slots after init() in its table of virtual functions, since zet::System declared it
// after its other functions. A host built against the required order called a wrong function.
#include "runtime/service_system.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#ifdef __GNUC__

namespace
{

struct Slots : CMyServiceSystem
{
    using CMyServiceSystem::exit;
    using CMyServiceSystem::init;
};

// The first word of a pointer to a virtual member function is its offset in the table, on some processors with a mark
// in the lowest bit; the difference of two pointers is the difference of their offsets.
template <class Operation>
std::ptrdiff_t offsetOf(Operation operation)
{
    std::ptrdiff_t words[sizeof(Operation) / sizeof(std::ptrdiff_t)];
    std::memcpy(words, &operation, sizeof operation);
    return words[0];
}

template <class First, class Second>
std::ptrdiff_t slotsBetween(First first, Second second)
{
    return (offsetOf(second) - offsetOf(first)) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(Bugs, ExitOfAServiceFollowsInitInItsTable)
{
    EXPECT_EQ(slotsBetween(&Slots::init, &Slots::exit), 1);
    EXPECT_EQ(slotsBetween(&Slots::exit, &Slots::ServiceOn), 6);
    EXPECT_EQ(slotsBetween(&Slots::ServiceOn, &Slots::ServiceOff), 1);
}

} // namespace

#endif
