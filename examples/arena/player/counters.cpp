#include "examples/arena/player/counters.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace arena::player
{

namespace
{

struct Name
{
    unsigned short m_Id;
    const char* m_Text;
};

constexpr Name kNames[] = {
#define COMMAND(id, Class, Base) {id, #Class},
#define SHARED(id, Class, Base) {id, #Class},
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
};

// The first class of an id that two classes have.
const char* nameOf(unsigned short id)
{
    for (const Name& name : kNames)
        if (name.m_Id == id)
            return name.m_Text;
    return "other";
}

bool isRefusal(const std::type_info& answer)
{
    const std::string_view name = answer.name();
    return name.ends_with("Fail") || name.ends_with("Cancel");
}

} // namespace

void Histogram::add(std::chrono::nanoseconds time)
{
    const double microseconds = std::max(1.0, static_cast<double>(time.count()) / 1000);
    const auto bucket = static_cast<size_t>(std::log(microseconds) / std::log(kStep));
    ++m_Buckets[std::min(bucket, m_Buckets.size() - 1)];
    ++m_Count;
}

void Histogram::add(const Histogram& other)
{
    for (size_t i = 0; i < m_Buckets.size(); ++i)
        m_Buckets[i] += other.m_Buckets[i];
    m_Count += other.m_Count;
}

double Histogram::getQuantile(double share) const
{
    const auto wanted = static_cast<unsigned long long>(std::ceil(share * static_cast<double>(m_Count)));
    unsigned long long seen = 0;
    for (size_t i = 0; i < m_Buckets.size(); ++i)
        if ((seen += m_Buckets[i]) >= wanted && seen > 0)
            return std::pow(kStep, static_cast<double>(i + 1)) / 1000;
    return 0;
}

void Counters::onQuestionEnd(const host::QuestionEnd& end)
{
    Kind& kind = m_Kinds[nameOf(end.m_Id)];
    if (!end.m_Answer)
    {
        ++(end.m_Why.m_Reason == host::Unanswered::kEnded ? kind.m_Interrupted : kind.m_Unanswered);
        return;
    }
    kind.m_Times.add(end.m_Time);
    if (isRefusal(*end.m_Answer))
        ++kind.m_Refused;
    else
        ++kind.m_Answered;
}

Kind Counters::getTotal() const
{
    Kind total;
    for (const auto& [name, kind] : m_Kinds)
    {
        total.m_Answered += kind.m_Answered;
        total.m_Refused += kind.m_Refused;
        total.m_Unanswered += kind.m_Unanswered;
        total.m_Interrupted += kind.m_Interrupted;
        total.m_Times.add(kind.m_Times);
    }
    return total;
}

} // namespace arena::player
