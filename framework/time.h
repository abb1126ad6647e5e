// Clocks and calendar time. Both clocks can be replaced by a test clock, so that no test waits.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

namespace zet
{

// Monotonic milliseconds, 32 bits, wrapping. Any thread.
COMMONGROUND_API unsigned int getTimeTick();
// Seconds since 1970-01-01 00:00:00 UTC; also stored to *seconds unless null. Any thread.
COMMONGROUND_API long long time(long long* seconds);
// Seconds that local standard time (without daylight saving) is behind UTC: negative east of Greenwich.
COMMONGROUND_API long getTimeBias();

// Replaces both clocks for the whole process during its lifetime; one at a time, constructed and advanced by one
// thread, read by any.
class COMMONGROUND_API TestClock
{
public:
    // seconds is calendar time since 1970 UTC; tick is the initial tick.
    explicit TestClock(long long seconds, unsigned int tick = 0);
    ~TestClock();
    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;

    // Whether a test clock exists. Any thread.
    static bool isOn();

    // Advances both clocks.
    void advance(unsigned int milliseconds);
    // Sets the calendar time, in seconds since 1970 UTC; the tick does not change.
    void setTime(long long seconds);
};

// A duration in whole seconds.
class TimeSpan
{
public:
    TimeSpan() = default;
    // Of this many seconds; negative ones too.
    explicit TimeSpan(long long seconds) : m_Seconds(seconds) {}
    // All seconds, or all whole days, of the duration.
    long long getTotalSeconds() const { return m_Seconds; }
    long long getDays() const { return m_Seconds / 86400; }

private:
    long long m_Seconds = 0;
};

// A calendar time in whole seconds. Its texts are local standard time, without daylight saving.
class COMMONGROUND_API Time
{
public:
    // 1970-01-01 00:00:00 UTC.
    Time() = default;
    // Seconds since 1970-01-01 00:00:00 UTC.
    explicit Time(long long seconds) : m_Seconds(seconds) {}
    // The time of zet::time() now.
    static Time getCurrent() { return Time(zet::time(nullptr)); }

    // Parses "year-month-day hour:minute:second", leading zeros optional. Returns false and changes nothing if the text
    // does not have six numbers in this form or is not a valid time.
    bool convertFromString(const wchar_t* text);
    // "2013-1-1 00:00:00"; with true, month and day also have two digits.
    String_T<wchar_t> convertToString(bool padded) const;

    // Seconds since 1970-01-01 00:00:00 UTC.
    long long getSeconds() const { return m_Seconds; }
    // Whole seconds from other to this time.
    long long operator-(const Time& other) const { return m_Seconds - other.m_Seconds; }
    // The time this many seconds later.
    Time operator+(long long seconds) const { return Time(m_Seconds + seconds); }
    // Comparisons by the seconds.
    friend bool operator==(const Time& a, const Time& b) { return a.m_Seconds == b.m_Seconds; }
    friend bool operator<(const Time& a, const Time& b) { return a.m_Seconds < b.m_Seconds; }

private:
    long long m_Seconds = 0;
};

} // namespace zet
