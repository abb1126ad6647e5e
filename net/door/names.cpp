#include "net/door/names.h"

#include "framework/platform/platform.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <mutex>
#include <string_view>

namespace zet::inner
{

namespace
{

// A name server that does not answer keeps its threads for many seconds, and names of others wait meanwhile.
constexpr int kMostThreads = 8;

struct Request
{
    std::string m_Name;
    AskSystem m_Ask;
    Door::Answer m_Answer;
};

struct Names
{
    std::mutex m_Mutex;
    std::deque<Request> m_Requests;
    int m_Threads = 0;
};

// Never destroyed: a thread may still use it while the process ends.
Names& names()
{
    static Names* const all = new Names;
    return *all;
}

bool take(Request& request)
{
    Names& all = names();
    const std::lock_guard lock(all.m_Mutex);
    if (all.m_Requests.empty())
    {
        --all.m_Threads;
        return false;
    }
    request = std::move(all.m_Requests.front());
    all.m_Requests.pop_front();
    return true;
}

void serve(void*)
{
    for (Request request; take(request);)
    {
        std::vector<Endpoint> found;
        try
        {
            found = request.m_Ask(request.m_Name.c_str());
        }
        catch (const std::exception&)
        {
            // No memory for the addresses: the name is unknown.
        }
        request.m_Answer(std::move(found));
        // What the answer holds must not wait for the next request.
        request.m_Answer = nullptr;
    }
}

bool isThisMachine(std::string_view name)
{
    constexpr std::string_view kName = "localhost";
    return std::equal(name.begin(), name.end(), kName.begin(), kName.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

} // namespace

void resolveApart(const char* name, AskSystem ask, Door::Answer answer)
{
    if (isThisMachine(name))
    {
        Endpoint loopback;
        Door::parse("127.0.0.1", 0, loopback);
        return answer({loopback});
    }
    Names& all = names();
    bool startsThread = false;
    {
        const std::lock_guard lock(all.m_Mutex);
        all.m_Requests.push_back({name, ask, std::move(answer)});
        startsThread = all.m_Threads < kMostThreads;
        all.m_Threads += startsThread;
    }
    if (!startsThread || platform::startThread(serve, nullptr))
        return;
    std::deque<Request> lost;
    {
        const std::lock_guard lock(all.m_Mutex);
        if (--all.m_Threads == 0)
            lost.swap(all.m_Requests);
    }
    for (const Request& each : lost)
        each.m_Answer({});
}

} // namespace zet::inner
