#include "framework/log.h"
#include "framework/log_module.h"
#include "tests/support/eventually.h"
#include "tests/support/log_folder.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

using zet::Log;

namespace
{

bool contains(const std::wstring& text, const wchar_t* part)
{
    return text.find(part) != std::wstring::npos;
}

// A log module that stalls or fails on demand, and records its calls. Modules stay for the whole process, so all tests
// share one.
class Writer
{
public:
    static Writer& get()
    {
        static Writer* const writer = new Writer;
        return *writer;
    }

    // Started during its lifetime, with an empty record.
    class Use
    {
    public:
        Use() { get().begin(); }
        ~Use() { get().end(); }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
    };

private:
    void begin()
    {
        static const zet::LogModule module = {zet::LogModule::kVersion,
                                              L"WriterLog",
                                              [](const wchar_t*, const wchar_t*) {},
                                              [] {},
                                              [] {},
                                              [](long long, int level, const wchar_t* line, int)
                                              { get().write(level, line); },
                                              [](int) {},
                                              [] { return get().flush(); }};
        EXPECT_TRUE(zet::registerLogModule(&module));
        testing::internal::CaptureStderr();
        Log::start();
        const std::lock_guard lock(m_Mutex);
        m_Lines.clear();
        m_Flushes = 0;
        m_IsFailing = false;
    }
    void end()
    {
        release();
        Log::stop();
        testing::internal::GetCapturedStderr();
    }

public:
    // The next line blocks until release().
    void hold()
    {
        const std::lock_guard lock(m_Mutex);
        m_IsHeld = true;
        m_IsInside = false;
    }
    bool isInside()
    {
        const std::lock_guard lock(m_Mutex);
        return m_IsInside;
    }
    void release()
    {
        const std::lock_guard lock(m_Mutex);
        m_IsHeld = false;
        m_IsFree.notify_all();
    }
    void fail(bool isFailing)
    {
        const std::lock_guard lock(m_Mutex);
        m_IsFailing = isFailing;
    }
    std::vector<std::wstring> lines()
    {
        const std::lock_guard lock(m_Mutex);
        return m_Lines;
    }
    int flushes()
    {
        const std::lock_guard lock(m_Mutex);
        return m_Flushes;
    }

private:
    void write(int, const wchar_t* line)
    {
        std::unique_lock lock(m_Mutex);
        m_IsInside = true;
        m_IsFree.wait(lock, [this] { return !m_IsHeld; });
        // Faults of other modules do not concern these tests.
        if (!contains(line, L"FileLog") && !contains(line, L"ConsoleLog") && !contains(line, L"NotingLog"))
            m_Lines.emplace_back(line);
    }
    const wchar_t* flush()
    {
        const std::lock_guard lock(m_Mutex);
        ++m_Flushes;
        return m_IsFailing ? L"no space" : nullptr;
    }

    std::mutex m_Mutex;
    std::condition_variable m_IsFree;
    std::vector<std::wstring> m_Lines;
    int m_Flushes = 0;
    bool m_IsHeld = false;
    bool m_IsInside = false;
    bool m_IsFailing = false;
};

std::vector<std::wstring> aboutTheWriter(const std::vector<std::wstring>& lines)
{
    std::vector<std::wstring> some;
    for (const std::wstring& line : lines)
        if (contains(line, L"WriterLog"))
            some.push_back(line);
    return some;
}

} // namespace

TEST(LogMailbox, StalledModuleBlocksNoLoggingThread)
{
    Writer& writer = Writer::get();
    const Writer::Use use;
    writer.hold();
    Log::message(L"first");
    ASSERT_TRUE(test::eventually([&] { return writer.isInside(); }));
    // All of these return while the first line is not written yet.
    for (int i = 0; i < 1000; ++i)
        Log::error(L"line %d", i);
    Log::whistle(true);
    EXPECT_FALSE(Log::flush(0));
    EXPECT_TRUE(writer.lines().empty());
    writer.release();
    EXPECT_TRUE(Log::flush(20000));
    EXPECT_EQ(writer.lines().size(), 1001u);
}

TEST(LogMailbox, LinesThatWaitGoOutTogether)
{
    Writer& writer = Writer::get();
    const Writer::Use use;
    writer.hold();
    Log::message(L"first");
    ASSERT_TRUE(test::eventually([&] { return writer.isInside(); }));
    for (int i = 0; i < 1000; ++i)
        Log::message(L"line %d", i);
    writer.release();
    EXPECT_TRUE(Log::flush(20000));
    EXPECT_EQ(writer.lines().size(), 1001u);
    // One flush for the first line, one for those that waited.
    EXPECT_EQ(writer.flushes(), 2);
    // And one if nothing waits.
    Log::message(L"last");
    EXPECT_TRUE(test::eventually([&] { return writer.flushes() == 3; }));
}

TEST(LogMailbox, LinesBeyondTheBoundAreCountedAndReported)
{
    Writer& writer = Writer::get();
    const test::LogLines others;
    const Writer::Use use;
    writer.hold();
    const unsigned long long before = Log::getLostLines();
    Log::message(L"first");
    ASSERT_TRUE(test::eventually([&] { return writer.isInside(); }));
    for (int i = 0; i < 10000; ++i)
        Log::message(L"%d", i);
    // 8,192 wait, including the first one.
    EXPECT_GE(Log::getLostLines() - before, 1809u);
    writer.release();
    EXPECT_TRUE(Log::flush(20000));
    Log::message(L"behind");
    EXPECT_TRUE(Log::flush(20000));
    // Another module's report may have used a place in the queue, or have been dropped.
    const std::vector<std::wstring> lines = writer.lines();
    EXPECT_GE(lines.size(), 8190u);
    EXPECT_LE(lines.size(), 8192u + 5u);
    ASSERT_GE(aboutTheWriter(lines).size(), 1u);
    EXPECT_EQ(aboutTheWriter(lines)[0].find(L"WriterLog lost 18"), 0u);
    EXPECT_TRUE(contains(aboutTheWriter(lines)[0], L" lines: they came faster than it could write them"));
    EXPECT_EQ(aboutTheWriter(others.texts()), aboutTheWriter(lines));
}

TEST(LogMailbox, LongLinesAreBoundedByTheirUnits)
{
    Writer& writer = Writer::get();
    const Writer::Use use;
    writer.hold();
    const unsigned long long before = Log::getLostLines();
    Log::message(L"first");
    ASSERT_TRUE(test::eventually([&] { return writer.isInside(); }));
    const zet::String_T<wchar_t> text(std::wstring(300000, L'x').c_str());
    for (int i = 0; i < 5; ++i)
        Log::message(L"%s", text);
    EXPECT_GE(Log::getLostLines() - before, 2u);
    writer.release();
    EXPECT_TRUE(Log::flush(20000));
    // The first line, three of the long ones, and the report.
    EXPECT_EQ(writer.lines().size(), 1u + 3u + 1u);
}

TEST(LogMailbox, FailureIsReportedOnceAndItsEndToo)
{
    Writer& writer = Writer::get();
    const test::LogLines others;
    const Writer::Use use;
    writer.fail(true);
    const unsigned long long before = Log::getLostLines();
    for (int i = 0; i < 3; ++i)
    {
        Log::message(L"lost");
        EXPECT_TRUE(Log::flush(20000));
    }
    EXPECT_EQ(Log::getLostLines() - before, 3u);
    EXPECT_EQ(aboutTheWriter(others.texts()), (std::vector<std::wstring>{L"WriterLog: no space"}));
    EXPECT_TRUE(others.has(Log::kError, L"WriterLog: no space"));
    writer.fail(false);
    Log::message(L"kept");
    EXPECT_TRUE(Log::flush(20000));
    EXPECT_EQ(writer.lines().back(), L"WriterLog writes again: 3 lines are lost");
    EXPECT_TRUE(others.has(Log::kWarning, L"WriterLog writes again: 3 lines are lost"));
    Log::message(L"kept, too");
    EXPECT_TRUE(Log::flush(20000));
    EXPECT_EQ(aboutTheWriter(others.texts()).size(), 2u);
}

TEST(LogMailbox, StopFollowsTheWaitingLines)
{
    Writer& writer = Writer::get();
    const Writer::Use use;
    for (int i = 0; i < 500; ++i)
        Log::message(L"line %d", i);
    Log::stop();
    EXPECT_EQ(writer.lines().size(), 500u);
}

// The thread sanitizer does not support threads in a forked process.
#if defined(__linux__) && !defined(__SANITIZE_THREAD__)
TEST(LogMailbox, ForkedProcessWritesWithAThreadOfItsOwn)
{
    testing::GTEST_FLAG(death_test_style) = "fast";
    const test::LogFolder folder;
    ASSERT_TRUE(folder.use());
    Log::start();
    Log::message(L"parent");
    EXPECT_TRUE(Log::flush(20000));
    const unsigned long long before = Log::getLostLines();
    EXPECT_EXIT(
        {
            Log::message(L"child");
            Log::stop();
            std::_Exit(Log::getLostLines() == before ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
    Log::message(L"parent again");
    Log::stop();
    Log::setparam(L"FileLog@path=");
    const std::vector<std::string> lines = folder.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(test::LogFolder::withoutTime(lines[0]), "[M] parent");
    EXPECT_EQ(test::LogFolder::withoutTime(lines[1]), "[M] child");
    EXPECT_EQ(test::LogFolder::withoutTime(lines[2]), "[M] parent again");
}
#endif
