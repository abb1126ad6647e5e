// The module with TLS and connections over UDP, which the library loads when they are first used.
#include "net/inner/secure_module.h"
#include "net/tls/context.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{

using zet::inner::SecureModule;

TEST(TlsModule, IsLoadedOnceByAnyThreads)
{
    std::vector<SecureModule*> found(8);
    std::vector<std::thread> threads;
    for (SecureModule*& each : found)
        threads.emplace_back([&each] { each = SecureModule::get(); });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_NE(found[0], nullptr);
    EXPECT_EQ(found, std::vector<SecureModule*>(found.size(), found[0]));
    EXPECT_TRUE(zet::TlsContext::isAvailable());
}

} // namespace
