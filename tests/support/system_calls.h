// Calls that the library makes to the operating system, counted on their way to the C library.
#pragma once

// The C library says its name in any of its headers.
#include <cstddef>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define IS_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define IS_SANITIZED
#endif

#if defined(__GLIBC__) && !defined(IS_SANITIZED)
#define COUNTS_SYSTEM_CALLS

#include <functional>

namespace test
{

// Of this process since start, as they were when this was made.
struct SystemCalls
{
    SystemCalls();

    long m_Sends;
    long m_Receives;
    long m_Controls;
    long m_Waits;
    long m_Others;
};

// While it lives, recv() of each socket of this process is answered by a function: the bytes that it put at data, or -1
// for none now. One at a time.
class AnsweredReceives
{
public:
    using Answer = std::function<long(void* data, size_t size)>;

    explicit AnsweredReceives(Answer answer);
    ~AnsweredReceives();
    AnsweredReceives(const AnsweredReceives&) = delete;
    AnsweredReceives& operator=(const AnsweredReceives&) = delete;

    const Answer m_Answer;
};

// Expects that nothing was called in between but waits.
void expectNoCalls(const SystemCalls& before, const SystemCalls& after);

} // namespace test

#endif
