#include "tests/support/system_calls.h"

#ifdef COUNTS_SYSTEM_CALLS

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>

namespace
{

std::atomic<long> g_Sends{0};
std::atomic<long> g_Receives{0};
std::atomic<long> g_Controls{0};
std::atomic<long> g_Waits{0};
std::atomic<long> g_Others{0};
std::atomic<const test::AnsweredReceives*> g_Answered{nullptr};

template <class Function>
Function nextOf(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

// Replaces the C library's function for the library.
#pragma GCC visibility push(default)
extern "C"
{
    ssize_t send(int handle, const void* data, size_t size, int flags)
    {
        static const auto next = nextOf<decltype(&send)>("send");
        ++g_Sends;
        return next(handle, data, size, flags);
    }
    ssize_t sendmsg(int handle, const msghdr* message, int flags)
    {
        static const auto next = nextOf<decltype(&sendmsg)>("sendmsg");
        ++g_Sends;
        return next(handle, message, flags);
    }
    int sendmmsg(int handle, mmsghdr* messages, unsigned int count, int flags)
    {
        static const auto next = nextOf<decltype(&sendmmsg)>("sendmmsg");
        ++g_Sends;
        return next(handle, messages, count, flags);
    }
    int recvmmsg(int handle, mmsghdr* messages, unsigned int count, int flags, timespec* timeout)
    {
        static const auto next = nextOf<decltype(&recvmmsg)>("recvmmsg");
        ++g_Receives;
        return next(handle, messages, count, flags, timeout);
    }
    ssize_t writev(int handle, const iovec* pieces, int count)
    {
        static const auto next = nextOf<decltype(&writev)>("writev");
        ++g_Sends;
        return next(handle, pieces, count);
    }
    ssize_t recv(int handle, void* data, size_t size, int flags)
    {
        static const auto next = nextOf<decltype(&recv)>("recv");
        ++g_Receives;
        const test::AnsweredReceives* const answered = g_Answered;
        if (!answered)
            return next(handle, data, size, flags);
        const long got = answered->m_Answer(data, size);
        if (got < 0)
            errno = EAGAIN;
        return got;
    }
    ssize_t recvmsg(int handle, msghdr* message, int flags)
    {
        static const auto next = nextOf<decltype(&recvmsg)>("recvmsg");
        ++g_Receives;
        return next(handle, message, flags);
    }
    ssize_t readv(int handle, const iovec* pieces, int count)
    {
        static const auto next = nextOf<decltype(&readv)>("readv");
        ++g_Receives;
        return next(handle, pieces, count);
    }
    int epoll_ctl(int poll, int operation, int handle, epoll_event* event) noexcept
    {
        static const auto next = nextOf<int (*)(int, int, int, epoll_event*)>("epoll_ctl");
        ++g_Controls;
        return next(poll, operation, handle, event);
    }
    int epoll_wait(int poll, epoll_event* events, int count, int timeout)
    {
        static const auto next = nextOf<decltype(&epoll_wait)>("epoll_wait");
        ++g_Waits;
        return next(poll, events, count, timeout);
    }
    int accept(int handle, sockaddr* address, socklen_t* size)
    {
        static const auto next = nextOf<decltype(&accept)>("accept");
        ++g_Others;
        return next(handle, address, size);
    }
    int accept4(int handle, sockaddr* address, socklen_t* size, int flags)
    {
        static const auto next = nextOf<decltype(&accept4)>("accept4");
        ++g_Others;
        return next(handle, address, size, flags);
    }
    int setsockopt(int handle, int level, int name, const void* value, socklen_t size) noexcept
    {
        static const auto next = nextOf<int (*)(int, int, int, const void*, socklen_t)>("setsockopt");
        ++g_Others;
        return next(handle, level, name, value, size);
    }
    int getsockname(int handle, sockaddr* address, socklen_t* size) noexcept
    {
        static const auto next = nextOf<int (*)(int, sockaddr*, socklen_t*)>("getsockname");
        ++g_Others;
        return next(handle, address, size);
    }
    int getpeername(int handle, sockaddr* address, socklen_t* size) noexcept
    {
        static const auto next = nextOf<int (*)(int, sockaddr*, socklen_t*)>("getpeername");
        ++g_Others;
        return next(handle, address, size);
    }
    int getsockopt(int handle, int level, int name, void* value, socklen_t* size) noexcept
    {
        static const auto next = nextOf<int (*)(int, int, int, void*, socklen_t*)>("getsockopt");
        ++g_Others;
        return next(handle, level, name, value, size);
    }
    int ioctl(int handle, unsigned long request, ...) noexcept
    {
        static const auto next = nextOf<int (*)(int, unsigned long, void*)>("ioctl");
        va_list arguments;
        va_start(arguments, request);
        void* const argument = va_arg(arguments, void*);
        va_end(arguments);
        ++g_Others;
        return next(handle, request, argument);
    }
} // extern "C"
#pragma GCC visibility pop

namespace test
{

SystemCalls::SystemCalls()
    : m_Sends(g_Sends), m_Receives(g_Receives), m_Controls(g_Controls), m_Waits(g_Waits), m_Others(g_Others)
{
}

AnsweredReceives::AnsweredReceives(Answer answer) : m_Answer(std::move(answer))
{
    g_Answered = this;
}

AnsweredReceives::~AnsweredReceives()
{
    g_Answered = nullptr;
}

void expectNoCalls(const SystemCalls& before, const SystemCalls& after)
{
    EXPECT_EQ(after.m_Sends, before.m_Sends);
    EXPECT_EQ(after.m_Receives, before.m_Receives);
    EXPECT_EQ(after.m_Controls, before.m_Controls);
    EXPECT_EQ(after.m_Others, before.m_Others);
}

} // namespace test

#endif
