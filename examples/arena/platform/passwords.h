// Passwords are kept as yescrypt hashes. A hash takes some 20 ms on purpose, so it is made on other threads: on that of
// the platform it would delay every player.
#pragma once

#include "framework/string.h"
#include "framework/unknown.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <queue>
#include <string>
#include <thread>
#include <vector>

namespace host
{
class Inbox;
}
namespace zet
{
class System;
}

namespace arena::platform
{

class Passwords
{
public:
    // The most that wait; further ones are refused, so that a flood of logins does not make players wait for minutes.
    static constexpr size_t kLimit = 200;

    // The results are reported on the thread of the System.
    explicit Passwords(zet::System& system);
    // What is not done is not reported.
    ~Passwords();
    Passwords(const Passwords&) = delete;
    Passwords& operator=(const Passwords&) = delete;

    // Both are false, and done is not called, if too many wait. The hash is empty if it could not be made.
    bool hash(const zet::String_T<wchar_t>& password, std::function<void(const std::string& hash)> done);
    // With an empty hash, of an account without a password or of none, the answer is false after the same time.
    bool check(const zet::String_T<wchar_t>& password, const std::string& hash, std::function<void(bool isRight)> done);

private:
    // Runs on a thread of the hashes and returns what to call on that of the System.
    using Work = std::function<std::function<void()>()>;

    bool push(Work work);
    void work();

    const zet::Unknown::Handle_T<host::Inbox> m_Inbox;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::queue<Work> m_Works;
    bool m_IsEnding = false;
    // One for each core.
    std::vector<std::thread> m_Threads;
};

} // namespace arena::platform
