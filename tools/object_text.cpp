#include "tools/object_text.h"

#include "framework/string.h"
#include "tools/object_json.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tools
{

using wire::Field;
using wire::Kind;

namespace
{

struct Plan;

// A field, or a part of one, with what its schema says of it each time.
struct Step
{
    const Field* m_Field = nullptr;
    // The name with quotes and colon; empty for a part.
    std::string m_Key;
    // Whether the member that says how many precedes it.
    bool m_IsSized = false;
    const Plan* m_Record = nullptr;
    std::vector<Step> m_Parts;
};

// The members of a class in the order in which they are shown.
struct Plan
{
    std::vector<Step> m_Members;
};

// The plans of all classes seen so far. A plan never moves.
class Plans
{
public:
    const Plan& of(const wire::Schema& schema)
    {
        const std::lock_guard lock(m_Mutex);
        return make(schema);
    }

private:
    const Plan& make(const wire::Schema& schema)
    {
        auto& plan = m_Plans[&schema];
        if (!plan)
        {
            // In the table before its members are: a class may hold lists of itself.
            plan = std::make_unique<Plan>();
            Plan& made = *plan;
            fill(made, schema);
            return made;
        }
        return *plan;
    }

    void fill(Plan& plan, const wire::Schema& schema)
    {
        std::vector<Step> body;
        std::set<size_t> sizes;
        for (const Field& field : schema.fields)
        {
            std::vector<Step>& to = field.head ? plan.m_Members : body;
            if (field.kind == Kind::kTable)
            {
                for (const Field& column : field.parts)
                    add(to, column, sizes);
            }
            else if (!field.name.empty() && field.kind != Kind::kCount)
            {
                add(to, field, sizes);
                if (field.most != 0)
                    sizes.insert(field.offset);
            }
        }
        for (Step& step : body)
            add(plan.m_Members, std::move(step));
    }
    void add(std::vector<Step>& to, const Field& field, const std::set<size_t>& sizes)
    {
        Step step = stepOf(field, sizes);
        step.m_Key = nlohmann::json(field.name).dump() + ":";
        add(to, std::move(step));
    }
    // A member that is sent twice is shown once, where it is first, as it is last.
    static void add(std::vector<Step>& to, Step step)
    {
        const auto same = [&](const Step& other) { return other.m_Key == step.m_Key; };
        const auto place = std::find_if(to.begin(), to.end(), same);
        if (place == to.end())
            to.push_back(std::move(step));
        else
            *place = std::move(step);
    }
    Step stepOf(const Field& field, const std::set<size_t>& sizes)
    {
        Step step;
        step.m_Field = &field;
        step.m_IsSized = field.says == wire::Says::kMember && sizes.count(field.sizeOffset) != 0;
        if (field.kind == Kind::kRecord)
            step.m_Record = &make(*field.record);
        for (const Field& part : field.parts)
            step.m_Parts.push_back(stepOf(part, sizes));
        return step;
    }

    std::mutex m_Mutex;
    std::unordered_map<const wire::Schema*, std::unique_ptr<Plan>> m_Plans;
};

// An address within an object.
using Place = const unsigned char*;

class Printer
{
public:
    explicit Printer(JsonText& out) : m_Out(out) {}

    void object(const Plan& plan, Place at)
    {
        char before = '{';
        for (const Step& step : plan.m_Members)
        {
            m_Out.put(before);
            before = ',';
            m_Out.put(step.m_Key);
            value(step, at + step.m_Field->offset, at);
        }
        if (plan.m_Members.empty())
            m_Out.put('{');
        m_Out.put('}');
    }

private:
    // owner: the object with the member that says how many.
    void value(const Step& step, Place at, Place owner)
    {
        const Field& field = *step.m_Field;
        switch (field.kind)
        {
        case Kind::kNumber:
            return number(field, at);
        case Kind::kFloat:
            return m_Out.addFloat(*reinterpret_cast<const float*>(at));
        case Kind::kText:
            return m_Out.addText(reinterpret_cast<const zet::String_T<wchar_t>*>(at)->getBuffer());
        case Kind::kRaw:
            return m_Out.addHex(at, static_cast<size_t>(howMany(step, owner)));
        case Kind::kBuffer:
        case Kind::kPayload:
        {
            const auto [bytes, size] = field.bytes(at);
            return m_Out.addHex(bytes, static_cast<size_t>(size));
        }
        case Kind::kRecord:
            return object(*step.m_Record, at);
        case Kind::kArray:
            return array(step, at, owner);
        case Kind::kPair:
            m_Out.put('[');
            value(step.m_Parts[0], at + step.m_Parts[0].m_Field->offset, owner);
            m_Out.put(',');
            value(step.m_Parts[1], at + step.m_Parts[1].m_Field->offset, owner);
            return m_Out.put(']');
        case Kind::kList:
            return list(step, at, owner);
        case Kind::kCount:
        case Kind::kTable:
            break;
        }
        m_Out.put("null");
    }

    void number(const Field& field, Place at)
    {
        // A little-endian machine, as the wire machinery tests.
        uint32_t bits = 0;
        std::memcpy(&bits, at, static_cast<size_t>(field.size));
        return field.isBool ? m_Out.addBool(bits != 0) : m_Out.addInteger(numberOf(field, bits));
    }

    void array(const Step& step, Place at, Place owner)
    {
        m_Out.put('[');
        const int count = howMany(step, owner);
        for (int i = 0; i < count; ++i)
        {
            if (i > 0)
                m_Out.put(',');
            value(step.m_Parts[0], at + static_cast<size_t>(i) * step.m_Field->stride, owner);
        }
        m_Out.put(']');
    }

    void list(const Step& step, Place at, Place owner)
    {
        m_Out.put('[');
        struct
        {
            Printer& m_Printer;
            const Step& m_Step;
            Place m_Owner;
            bool m_IsFirst;
        } state = {*this, step, owner, true};
        // One reference, so that the function needs no memory.
        step.m_Field->walk(at, [&state](const void* key, const void* element)
                           { state.m_Printer.element(state.m_Step, key, element, state.m_Owner, state.m_IsFirst); });
        m_Out.put(']');
    }
    void element(const Step& step, const void* key, const void* element, Place owner, bool& isFirst)
    {
        if (!isFirst)
            m_Out.put(',');
        isFirst = false;
        const bool hasKey = step.m_Parts.size() == 2;
        if (hasKey)
        {
            m_Out.put('[');
            value(step.m_Parts[0], static_cast<Place>(key), owner);
            m_Out.put(',');
        }
        value(step.m_Parts.back(), static_cast<Place>(element), owner);
        if (hasKey)
            m_Out.put(']');
    }

    static int howMany(const Step& step, Place owner)
    {
        const Field& field = *step.m_Field;
        if (field.says != wire::Says::kMember)
            return field.extent;
        if (!step.m_IsSized)
            return 0;
        int said = 0;
        std::memcpy(&said, owner + field.sizeOffset, sizeof said);
        return std::clamp(said, 0, field.extent);
    }

    JsonText& m_Out;
};

} // namespace

void addObject(JsonText& out, const wire::Schema& schema, const void* object)
{
    static Plans plans;
    Printer(out).object(plans.of(schema), static_cast<Place>(object));
}

} // namespace tools
