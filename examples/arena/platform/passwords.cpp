#include "examples/arena/platform/passwords.h"
#include "framework/string_helper.h"
#include "host/inbox.h"

#include <crypt.h>

#include <algorithm>
#include <memory>

namespace arena::platform
{

namespace
{

std::string toUtf8(const zet::String_T<wchar_t>& text)
{
    return zet::StringHelper::wideToUtf8(text).getBuffer();
}

// The empty text if the setting is not valid.
std::string hashOf(const std::string& password, const char* setting)
{
    const auto data = std::make_unique<crypt_data>();
    const char* const hash = crypt_r(password.c_str(), setting, data.get());
    return hash && hash[0] != '*' ? hash : "";
}

// A new salt, with the default cost.
std::string newSetting()
{
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    return crypt_gensalt_rn("$y$", 0, nullptr, 0, setting, sizeof setting) ? setting : "";
}

bool isEqual(const std::string& a, const std::string& b)
{
    // Takes the same time wherever the first difference is.
    unsigned char difference = a.size() == b.size() ? 0 : 1;
    for (size_t i = 0; i < a.size() && i < b.size(); ++i)
        difference = static_cast<unsigned char>(difference | (a[i] ^ b[i]));
    return difference == 0;
}

} // namespace

Passwords::Passwords(zet::System& system) : m_Inbox(new host::Inbox)
{
    m_Inbox->start(&system);
    for (unsigned int i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i)
        m_Threads.emplace_back([this] { work(); });
}

Passwords::~Passwords()
{
    {
        const std::lock_guard lock(m_Mutex);
        m_IsEnding = true;
    }
    m_Changed.notify_all();
    for (std::thread& thread : m_Threads)
        thread.join();
    m_Inbox->stop();
}

bool Passwords::hash(const zet::String_T<wchar_t>& password, std::function<void(const std::string& hash)> done)
{
    return push([password = toUtf8(password), done = std::move(done)]() -> std::function<void()>
                { return [hash = hashOf(password, newSetting().c_str()), done] { done(hash); }; });
}

bool Passwords::check(const zet::String_T<wchar_t>& password, const std::string& hash,
                      std::function<void(bool isRight)> done)
{
    return push(
        [password = toUtf8(password), hash, done = std::move(done)]() -> std::function<void()>
        {
            // A hash holds its own setting.
            const std::string own = hashOf(password, hash.empty() ? newSetting().c_str() : hash.c_str());
            const bool isRight = !hash.empty() && isEqual(own, hash);
            return [isRight, done] { done(isRight); };
        });
}

bool Passwords::push(Work work)
{
    {
        const std::lock_guard lock(m_Mutex);
        if (m_Works.size() >= kLimit)
            return false;
        m_Works.push(std::move(work));
    }
    m_Changed.notify_one();
    return true;
}

void Passwords::work()
{
    std::unique_lock lock(m_Mutex);
    while (true)
    {
        m_Changed.wait(lock, [this] { return m_IsEnding || !m_Works.empty(); });
        if (m_IsEnding)
            return;
        const Work next = std::move(m_Works.front());
        m_Works.pop();
        lock.unlock();
        m_Inbox->post(next());
        lock.lock();
    }
}

} // namespace arena::platform
