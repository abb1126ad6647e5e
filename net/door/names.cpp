#include "net/door/names.h"

#include "framework/platform/platform.h"
#include "net/door/addresses.h"

#include <algorithm>
#include <atomic>
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
    AskSystem m_Ask = nullptr;
    Door::Answer m_Answer;
    Door::Asker m_Asker;
};

struct Names
{
    const unsigned long m_Process = platform::getProcessId();
    std::mutex m_Mutex;
    std::deque<Request> m_Requests;
    int m_Threads = 0;
    // Those of the process that this one was forked from.
    Names* m_Parent = nullptr;
};

// Never destroyed: a thread may still use it while the process ends. After fork() the parent's has threads that do not
// exist here, and perhaps a lock that is never released: a child makes its own.
Names& names()
{
    static std::atomic<Names*> current{nullptr};
    Names* present = current.load();
    if (present && present->m_Process == platform::getProcessId())
        return *present;
    auto made = std::make_unique<Names>();
    made->m_Parent = present;
    return *(current.compare_exchange_strong(present, made.get()) ? made.release() : present);
}

bool take(Names& all, Request& request)
{
    const std::lock_guard lock(all.m_Mutex);
    while (!all.m_Requests.empty() && all.m_Requests.front().m_Asker.expired())
        all.m_Requests.pop_front();
    if (all.m_Requests.empty())
    {
        --all.m_Threads;
        return false;
    }
    request = std::move(all.m_Requests.front());
    all.m_Requests.pop_front();
    return true;
}

void serve(void* all)
{
    for (Request request; take(*static_cast<Names*>(all), request);)
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

// False where the queue is full of lookups that are still wanted. The answer stays the caller's then.
bool enter(Names& all, const char* name, Door::Answer& answer, const Door::Asker& asker, AskSystem ask,
           bool& startsThread)
{
    const std::lock_guard lock(all.m_Mutex);
    if (all.m_Requests.size() >= kMostLookups)
        std::erase_if(all.m_Requests, [](const Request& each) { return each.m_Asker.expired(); });
    if (all.m_Requests.size() >= kMostLookups)
        return false;
    all.m_Requests.push_back({name, ask, std::move(answer), asker});
    startsThread = all.m_Threads < kMostThreads;
    all.m_Threads += startsThread;
    return true;
}

bool isThisMachine(std::string_view name)
{
    constexpr std::string_view kName = "localhost";
    return std::equal(name.begin(), name.end(), kName.begin(), kName.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

// IPv4 first: a server that allows 127.0.0.1 alone accepts a connection from ::1 before it refuses it, and by then no
// other address is tried.
std::vector<Endpoint> loopbacks()
{
    std::vector<Endpoint> made(2);
    Door::parse("127.0.0.1", 0, made[0]);
    Door::parse("::1", 0, made[1]);
    return made;
}

} // namespace

std::vector<Endpoint> askSystem(const char* name)
{
    startSystem();
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (::getaddrinfo(name, nullptr, &wanted, &first) != 0)
        return {};
    const auto release = [](addrinfo* list) { ::freeaddrinfo(list); };
    const std::unique_ptr<addrinfo, decltype(release)> owner(first, release);
    std::vector<Endpoint> found;
    for (const addrinfo* each = first; each; each = each->ai_next)
        if (each->ai_family == AF_INET6)
            found.push_back(fromSystem(*reinterpret_cast<const sockaddr_in6*>(each->ai_addr)));
        else if (each->ai_family == AF_INET)
            found.push_back(fromSystem(*reinterpret_cast<const sockaddr_in*>(each->ai_addr)));
    return alternateFamilies(found);
}

std::vector<Endpoint> alternateFamilies(const std::vector<Endpoint>& found)
{
    std::vector<Endpoint> ordered;
    ordered.reserve(found.size());
    auto v6 = found.begin();
    auto v4 = found.begin();
    const auto takeNext = [&](auto& place, bool isV4)
    {
        place = std::find_if(place, found.end(), [=](const Endpoint& each) { return each.isV4() == isV4; });
        if (place != found.end())
            ordered.push_back(*place++);
    };
    while (ordered.size() < found.size())
    {
        takeNext(v6, false);
        takeNext(v4, true);
    }
    return ordered;
}

void resolveApart(const char* name, Door::Answer answer, const Door::Asker& asker, AskSystem ask)
{
    if (isThisMachine(name))
        return answer(loopbacks());
    Names& all = names();
    bool startsThread = false;
    if (!enter(all, name, answer, asker, ask, startsThread))
        return answer({});
    if (!startsThread || platform::startThread(serve, &all))
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
