// For tests that need IPv6 on the loopback.
#pragma once

#include "net/door/door.h"

#include <gtest/gtest.h>

namespace test
{

// Whether ::1 can be bound on this machine.
inline bool hasIPv6()
{
    using zet::inner::Door;
    zet::inner::Endpoint own;
    Door::parse("::1", 0, own);
    Door::Fault fault;
    const zet::inner::DoorHandle handle = openPort(Door::getReal(), Door::kStream, own, fault);
    return !fault;
}

} // namespace test

#define SKIP_WITHOUT_IPV6()                                                                                            \
    if (!test::hasIPv6())                                                                                              \
    GTEST_SKIP() << "::1 cannot be bound on this machine"
