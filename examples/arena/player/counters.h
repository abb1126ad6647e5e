// What the players of a process have asked, by the class of the command: counts, and times of the round trips.
#pragma once

#include "host/questions.h"

#include <array>
#include <map>
#include <string>

namespace arena::player
{

// Times from 1 us to about 70 s in steps of a quarter.
class Histogram
{
public:
    void add(std::chrono::nanoseconds time);
    void add(const Histogram& other);
    // The time in milliseconds that this share of the values, 0 to 1, does not exceed; 0 without values.
    double getQuantile(double share) const;
    unsigned long long getCount() const { return m_Count; }

private:
    static constexpr double kStep = 1.25;
    std::array<unsigned int, 82> m_Buckets{};
    unsigned long long m_Count = 0;
};

// One class of commands.
struct Kind
{
    unsigned long long getSent() const { return m_Answered + m_Refused + m_Unanswered + m_Interrupted; }

    unsigned long long m_Answered = 0;
    // Answers whose class says that the request failed.
    unsigned long long m_Refused = 0;
    // The time was over, or the command was not sent.
    unsigned long long m_Unanswered = 0;
    // The connection ended.
    unsigned long long m_Interrupted = 0;
    Histogram m_Times;
};

class Counters : public host::QuestionObserver
{
public:
    void onQuestionEnd(const host::QuestionEnd& end) override;
    // By the name of the class.
    const std::map<std::string, Kind>& getKinds() const { return m_Kinds; }
    Kind getTotal() const;

private:
    std::map<std::string, Kind> m_Kinds;
};

} // namespace arena::player
