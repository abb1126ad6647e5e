#include "framework/time.h"

#include "framework/inner/nanoseconds.h"
#include "framework/platform/platform.h"

#include <atomic>

namespace zet
{

namespace
{

// The clock values while a TestClock exists.
struct TestTime
{
    std::atomic<bool> m_IsOn{false};
    std::atomic<long long> m_CalendarMilliseconds{0};
    // Does not wrap, unlike getTimeTick().
    std::atomic<unsigned long long> m_Milliseconds{0};
};

TestTime& getTestTime()
{
    static TestTime testTime;
    return testTime;
}

long long floorDivide(long long value, long long by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

constexpr long long kSecondsPerDay = 86400;

bool isLeapYear(long long year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysOfMonth(long long year, long long month)
{
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0);
}

// Years start on 1 March here, so that the leap day is the last day and a month's first day is a linear function.
long long daysOfDate(long long year, long long month, long long day)
{
    const long long marchYear = month > 2 ? year : year - 1;
    const long long era = floorDivide(marchYear, 400);
    const long long yearOfEra = marchYear - era * 400;
    const long long dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const long long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    // There are 719,468 days between 0000-03-01 and 1970-01-01.
    return era * 146097 + dayOfEra - 719468;
}

struct Date
{
    long long m_Year;
    int m_Month;
    int m_Day;
};

Date dateOfDays(long long days)
{
    const long long shifted = days + 719468;
    const long long era = floorDivide(shifted, 146097);
    const long long dayOfEra = shifted - era * 146097;
    const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long long marchMonth = (5 * dayOfYear + 2) / 153;
    const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    const int day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    return {era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month, day};
}

void skipSpace(const wchar_t*& at)
{
    while (*at == L' ' || (*at >= L'\t' && *at <= L'\r'))
        ++at;
}

// One to nine digits.
bool takeNumber(const wchar_t*& at, long long& number)
{
    const wchar_t* const first = at;
    number = 0;
    for (; *at >= L'0' && *at <= L'9'; ++at)
    {
        if (at - first == 9)
            return false;
        number = number * 10 + (*at - L'0');
    }
    return at != first;
}

bool takeUnit(const wchar_t*& at, wchar_t unit)
{
    if (*at != unit)
        return false;
    ++at;
    return true;
}

} // namespace

unsigned int getTimeTick()
{
    const TestTime& test = getTestTime();
    if (test.m_IsOn.load(std::memory_order_acquire))
        return static_cast<unsigned int>(test.m_Milliseconds.load(std::memory_order_relaxed));
    return static_cast<unsigned int>(platform::getMonotonicMilliseconds());
}

unsigned long long inner::getNanoseconds()
{
    const TestTime& test = getTestTime();
    if (test.m_IsOn.load(std::memory_order_acquire))
        return test.m_Milliseconds.load(std::memory_order_relaxed) * 1000000;
    return platform::getMonotonicNanoseconds();
}

long long time(long long* seconds)
{
    const TestTime& test = getTestTime();
    const long long milliseconds = test.m_IsOn.load(std::memory_order_acquire)
                                       ? test.m_CalendarMilliseconds.load(std::memory_order_relaxed)
                                       : platform::getCalendarMilliseconds();
    const long long now = floorDivide(milliseconds, 1000);
    if (seconds)
        *seconds = now;
    return now;
}

long getTimeBias()
{
    return platform::getStandardZoneBias();
}

TestClock::TestClock(long long seconds, unsigned int tick)
{
    TestTime& test = getTestTime();
    test.m_CalendarMilliseconds.store(seconds * 1000, std::memory_order_relaxed);
    test.m_Milliseconds.store(tick, std::memory_order_relaxed);
    test.m_IsOn.store(true, std::memory_order_release);
}

TestClock::~TestClock()
{
    getTestTime().m_IsOn.store(false, std::memory_order_release);
}

bool TestClock::isOn()
{
    return getTestTime().m_IsOn.load(std::memory_order_acquire);
}

void TestClock::advance(unsigned int milliseconds)
{
    TestTime& test = getTestTime();
    test.m_CalendarMilliseconds.fetch_add(milliseconds, std::memory_order_relaxed);
    test.m_Milliseconds.fetch_add(milliseconds, std::memory_order_relaxed);
}

void TestClock::setTime(long long seconds)
{
    getTestTime().m_CalendarMilliseconds.store(seconds * 1000, std::memory_order_relaxed);
}

bool Time::convertFromString(const wchar_t* text)
{
    if (!text)
        return false;
    const wchar_t* at = text;
    long long year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    skipSpace(at);
    if (!takeNumber(at, year) || !takeUnit(at, L'-') || !takeNumber(at, month) || !takeUnit(at, L'-') ||
        !takeNumber(at, day) || !takeUnit(at, L' '))
        return false;
    skipSpace(at);
    if (!takeNumber(at, hour) || !takeUnit(at, L':') || !takeNumber(at, minute) || !takeUnit(at, L':') ||
        !takeNumber(at, second))
        return false;
    skipSpace(at);
    if (*at)
        return false;
    if (month < 1 || month > 12 || day < 1 || day > daysOfMonth(year, month) || hour > 23 || minute > 59 || second > 59)
        return false;
    m_Seconds = daysOfDate(year, month, day) * kSecondsPerDay + hour * 3600 + minute * 60 + second + getTimeBias();
    return true;
}

String_T<wchar_t> Time::convertToString(bool padded) const
{
    const long long local = m_Seconds - getTimeBias();
    const long long days = floorDivide(local, kSecondsPerDay);
    const int second = static_cast<int>(local - days * kSecondsPerDay);
    const Date date = dateOfDays(days);
    return formatText(padded ? L"%04d-%02d-%02d %02d:%02d:%02d" : L"%d-%d-%d %02d:%02d:%02d", date.m_Year, date.m_Month,
                      date.m_Day, second / 3600, second / 60 % 60, second % 60);
}

} // namespace zet
