// Counts the library's calls to the operating system, by replacing functions of the C library.
#pragma once

// Any header of the C library defines its name.
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

// The counts of this process at construction.
struct SystemCalls
{
    SystemCalls();

    long m_Sends;
    long m_Receives;
    long m_Controls;
    long m_Waits;
    long m_Others;
};

// During its lifetime a function replaces recv() for every socket of this process: it returns the number of bytes
// stored at data, or -1 for none now. One object at a time.
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

// Expects that only waits were called in between.
void expectNoCalls(const SystemCalls& before, const SystemCalls& after);

} // namespace test

#endif
