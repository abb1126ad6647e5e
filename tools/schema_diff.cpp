#include "tools/schema_diff.h"

#include "tools/schema_fields.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

constexpr size_t kMostHolders = 3;

// A class of a document with the name that people know it by.
std::string limitChange(const std::string& name, const std::string& form, const ordered_json& now,
                        const ordered_json& before)
{
    std::string text = "The limit " + name;
    return text.append(" of ")
        .append(form)
        .append(" is ")
        .append(now.dump())
        .append(", and was ")
        .append(before.dump());
}

std::string titleOf(const ordered_json& each)
{
    const std::string id = textOf(each, "id");
    return textOf(each, "class") + (id.empty() ? "" : " (" + id + ")");
}

class Comparison
{
public:
    Comparison(const ordered_json& older, const ordered_json& newer) : m_Older(older), m_Newer(newer)
    {
        for (const ordered_json& each : older["classes"])
            m_OldClasses[textOf(each, "class")] = &each;
        for (const ordered_json& each : newer["classes"])
            m_NewClasses[textOf(each, "class")] = &each;
    }

    std::vector<Change> run()
    {
        limits();
        types();
        const bool isWhole = !m_Older.contains("only") && !m_Newer.contains("only");
        for (const auto& [name, each] : m_NewClasses)
            if (const auto old = m_OldClasses.find(name); old != m_OldClasses.end())
                sameClass(*old->second, *each);
        if (isWhole)
            classesOfOneSide();
        std::stable_sort(m_Changes.begin(), m_Changes.end(),
                         [](const Change& a, const Change& b) { return a.m_Effect < b.m_Effect; });
        return std::move(m_Changes);
    }

private:
    using Classes = std::map<std::string, const ordered_json*>;
    using Fields = std::vector<const ordered_json*>;
    enum Direction
    {
        kNone = 0,
        kOldReadsNew = 1,
        kNewReadsOld = 2,
        kBoth = 3
    };

    void add(Effect effect, int direction, const ordered_json* each, const std::string& field,
             const std::string& sentence)
    {
        Change change;
        change.m_Effect = effect;
        change.m_OldReadsNew = direction & kOldReadsNew;
        change.m_NewReadsOld = direction & kNewReadsOld;
        change.m_Class = each ? textOf(*each, "class") : "";
        change.m_Field = field;
        change.m_Sentence = (each ? titleOf(*each) + ": " : "") + sentence;
        m_Changes.push_back(change);
    }
    void breaks(int direction, const ordered_json* each, const std::string& field, const std::string& what)
    {
        static constexpr const char* who[] = {"", " An older peer cannot read what a newer one sends.",
                                              " A newer peer cannot read what an older one sends.",
                                              " Neither an older nor a newer peer can read what the other sends."};
        add(Effect::kBreaks, direction, each, field, what + "." + who[direction] + holdersOf(each));
    }
    void documents(const ordered_json* each, const std::string& field, const std::string& what)
    {
        add(Effect::kDocuments, kNone, each, field, what + ".");
    }

    void limits()
    {
        for (const auto& [form, before] : m_Older["limits"].items())
        {
            const ordered_json after = m_Newer["limits"].value(form, ordered_json());
            if (!before.is_object() || !after.is_object())
                continue;
            for (const auto& [name, value] : before.items())
            {
                const ordered_json now = after.value(name, ordered_json());
                if (now == value || !now.is_number() || !value.is_number())
                    continue;
                breaks(now < value ? kNewReadsOld : kOldReadsNew, nullptr, "", limitChange(name, form, now, value));
            }
        }
    }
    void types()
    {
        for (const auto& [name, before] : m_Older["types"].items())
            if (m_Newer["types"].contains(name) && m_Newer["types"][name] != before)
                breaks(kBoth, nullptr, "", "The type " + name + " has other bytes");
        for (const auto& [name, before] : m_Older["words"].items())
            if (m_Newer["words"].contains(name) && m_Newer["words"][name] != before)
                documents(nullptr, "", "The word " + name + " is explained otherwise");
    }

    void classesOfOneSide()
    {
        std::map<std::string, const ordered_json*> goneById;
        std::set<std::string> renamed;
        for (const auto& [name, each] : m_OldClasses)
            if (m_NewClasses.count(name) == 0 && each->contains("id"))
                goneById[textOf(*each, "id")] = each;
        for (const auto& [name, each] : m_NewClasses)
        {
            if (m_OldClasses.count(name) != 0 || textOf(*each, "family") == "part")
                continue;
            const auto gone = each->contains("id") ? goneById.find(textOf(*each, "id")) : goneById.end();
            if (gone == goneById.end())
            {
                add(Effect::kAdds, kNone, each, "",
                    textOf(*each, "family") == "command" ? "a new command. An older peer logs its id and drops it."
                                                         : "a new " + textOf(*each, "family") + ".");
                continue;
            }
            const std::string before = textOf(*gone->second, "class");
            if (sameFields(*gone->second, *each))
            {
                documents(each, "", "the class was named " + before + ", and its bytes stay");
                renamed.insert(before);
            }
            else
            {
                breaks(kOldReadsNew, each, "",
                       "a new command with the id of " + before + ", which an older peer reads");
            }
        }
        for (const auto& [name, each] : m_OldClasses)
            if (m_NewClasses.count(name) == 0 && renamed.count(name) == 0 && textOf(*each, "family") != "part")
                breaks(kNewReadsOld, each, "", "the " + textOf(*each, "family") + " is gone");
    }

    void sameClass(const ordered_json& before, const ordered_json& now)
    {
        for (const char* const name : {"id", "envelope", "or_envelope"})
        {
            const std::string old = textOf(before, name);
            const std::string fresh = textOf(now, name);
            if (old == fresh)
                continue;
            const std::string label = std::string(name) == "or_envelope" ? "second envelope" : name;
            if (old.empty())
                add(Effect::kAdds, kNone, &now, "",
                    std::string("it has the ").append(label).append(" ").append(fresh).append(", and had none."));
            else
                breaks(kBoth, &now, "",
                       std::string("its ")
                           .append(label)
                           .append(" is ")
                           .append(fresh.empty() ? "gone" : fresh)
                           .append(", and was ")
                           .append(old));
        }
        for (const char* const name : {"family", "base"})
            if (textOf(before, name) != textOf(now, name))
                documents(&now, "",
                          std::string("its ") + name + " is " + textOf(now, name) + ", and was " +
                              textOf(before, name));
        forms(before, now);
        fields(before, now);
    }
    void forms(const ordered_json& before, const ordered_json& now)
    {
        const auto has = [](const ordered_json& each, const ordered_json& form)
        { return each.contains("forms") && std::count(each["forms"].begin(), each["forms"].end(), form) != 0; };
        for (const char* const form : {"cmd", "data"})
        {
            if (has(before, form) && !has(now, form))
                breaks(kBoth, &now, "", std::string("it has no form ") + form + " any longer");
            if (!has(before, form) && has(now, form))
                add(Effect::kAdds, kNone, &now, "", std::string("it has the form ") + form + " now.");
        }
    }

    static Fields fieldsOf(const ordered_json& each)
    {
        Fields all;
        for (const ordered_json& field : each["fields"])
            all.push_back(&field);
        return all;
    }

    // Fields with one label and one form that are in the same order on both sides, as places.
    std::vector<std::pair<size_t, size_t>> commonOrder(const Fields& before, const Fields& now)
    {
        std::vector<std::vector<size_t>> longest(before.size() + 1, std::vector<size_t>(now.size() + 1, 0));
        const auto isSame = [&](size_t i, size_t k)
        { return labelOf(*before[i]) == labelOf(*now[k]) && sameWire(*before[i], *now[k]); };
        for (size_t i = before.size(); i-- > 0;)
            for (size_t k = now.size(); k-- > 0;)
                longest[i][k] =
                    isSame(i, k) ? longest[i + 1][k + 1] + 1 : std::max(longest[i + 1][k], longest[i][k + 1]);
        std::vector<std::pair<size_t, size_t>> common;
        for (size_t i = 0, k = 0; i < before.size() && k < now.size();)
        {
            if (isSame(i, k) && longest[i][k] == longest[i + 1][k + 1] + 1)
                common.emplace_back(i++, k++);
            else if (longest[i + 1][k] >= longest[i][k + 1])
                ++i;
            else
                ++k;
        }
        return common;
    }

    static std::string placeOf(const Fields& fields, size_t at)
    {
        return at == 0 ? "first" : "after " + labelOf(*fields[at - 1]);
    }

    void fields(const ordered_json& before, const ordered_json& now)
    {
        const Fields old = fieldsOf(before);
        const Fields fresh = fieldsOf(now);
        const auto common = commonOrder(old, fresh);
        std::vector<size_t> gone;
        std::vector<size_t> come;
        // The number of common fields before each.
        std::map<size_t, size_t> gapOfGone;
        std::map<size_t, size_t> gapOfCome;
        size_t i = 0;
        size_t k = 0;
        for (size_t gap = 0; gap <= common.size(); ++gap)
        {
            const auto [toOld, toFresh] = gap < common.size() ? common[gap] : std::make_pair(old.size(), fresh.size());
            for (; i < toOld; gapOfGone[i] = gap, ++i)
                gone.push_back(i);
            for (; k < toFresh; gapOfCome[k] = gap, ++k)
                come.push_back(k);
            if (gap < common.size())
                remarks(now, *old[i++], *fresh[k++]);
        }
        const auto take = [&](auto isOf, auto report)
        {
            for (auto from = gone.begin(); from != gone.end();)
            {
                const auto to = std::find_if(come.begin(), come.end(), [&](size_t at) { return isOf(*from, at); });
                if (to == come.end())
                {
                    ++from;
                    continue;
                }
                report(*from, *to);
                come.erase(to);
                from = gone.erase(from);
            }
        };
        take([&](size_t from, size_t to)
             { return labelOf(*old[from]) == labelOf(*fresh[to]) && sameWire(*old[from], *fresh[to]); },
             [&](size_t from, size_t to)
             {
                 breaks(kBoth, &now, labelOf(*fresh[to]),
                        labelOf(*fresh[to]) + " is sent " + placeOf(fresh, to) + ", and was sent " +
                            placeOf(old, from));
             });
        take([&](size_t from, size_t to) { return labelOf(*old[from]) == labelOf(*fresh[to]); },
             [&](size_t from, size_t to)
             {
                 const std::string type = typeText(*fresh[to]);
                 const std::string was = typeText(*old[from]);
                 breaks(kBoth, &now, labelOf(*fresh[to]),
                        labelOf(*fresh[to]) +
                            (type == was ? " has another form on the wire" : " is " + type + ", and was " + was));
             });
        take([&](size_t from, size_t to)
             { return gapOfGone[from] == gapOfCome[to] && sameWire(*old[from], *fresh[to]); },
             [&](size_t from, size_t to)
             {
                 documents(&now, labelOf(*fresh[to]),
                           labelOf(*fresh[to]) + " was named " + labelOf(*old[from]) + ", and its bytes stay");
             });
        for (const size_t at : gone)
            reportRemoved(before, now, old, at, gapOfGone[at] == common.size() && come.empty());
        for (const size_t at : come)
            reportAdded(before, now, fresh, at, gapOfCome[at] == common.size() && gone.empty());
    }

    // Whether a reader of the class meets the end of its bytes, and leaves what it does not know.
    bool isOpenAtItsEnd(const ordered_json& before, const ordered_json& now)
    {
        return textOf(now, "family") != "command" && holders(before, m_Older).empty() && holders(now, m_Newer).empty();
    }
    bool isHeld(const ordered_json& before, const ordered_json& now)
    {
        return !holders(before, m_Older).empty() || !holders(now, m_Newer).empty();
    }

    void reportRemoved(const ordered_json& before, const ordered_json& now, const Fields& old, size_t at, bool isLast)
    {
        const int direction = isLast && isOpenAtItsEnd(before, now) ? kOldReadsNew : kBoth;
        breaks(direction, &now, labelOf(*old[at]), labelOf(*old[at]) + " is gone; it was sent " + placeOf(old, at));
    }
    void reportAdded(const ordered_json& before, const ordered_json& now, const Fields& fresh, size_t at, bool isLast)
    {
        int direction = kBoth;
        if (isLast && isOpenAtItsEnd(before, now))
            direction &= ~kOldReadsNew;
        if (isLast && !isHeld(before, now) && mayBeMissing(*fresh[at]))
            direction &= ~kNewReadsOld;
        const std::string what = labelOf(*fresh[at]) + " (" + typeText(*fresh[at]) + ") is new, " + placeOf(fresh, at);
        if (direction == kNone)
            add(Effect::kAdds, kNone, &now, labelOf(*fresh[at]),
                what + ". An older peer leaves its bytes unread, and a newer one goes on without it.");
        else
            breaks(direction, &now, labelOf(*fresh[at]), what);
    }

    // What may differ between two fields of one label and one form on the wire.
    void remarks(const ordered_json& now, const ordered_json& old, const ordered_json& fresh)
    {
        const std::string label = labelOf(fresh);
        if (textOf(old, "type") == "record" && textOf(old, "record") != textOf(fresh, "record"))
            documents(&now, label, "the record of " + label + " was named " + textOf(old, "record"));
        else if (typeText(old) != typeText(fresh))
            documents(&now, label,
                      label + " is " + typeText(fresh) + ", and was " + typeText(old) + "; its bytes stay");
        if (textOf(old, "key_member") != textOf(fresh, "key_member"))
            breaks(kBoth, &now, label,
                   label + " has the key " + textOf(fresh, "key_member") + ", and had " + textOf(old, "key_member") +
                       ", so other elements replace each other");
        if (const int64_t most = fresh.value("most", int64_t{0}), was = old.value("most", int64_t{0}); most != was)
            breaks(most < was ? kNewReadsOld : kOldReadsNew, &now, label,
                   label + " has space for " + std::to_string(most) + ", and had for " + std::to_string(was));
        if (old.value("default", ordered_json()) != fresh.value("default", ordered_json()))
            documents(&now, label,
                      "the default of " + label + " is " + shortened(fresh) + ", and was " + shortened(old));
        if (old.value("words", ordered_json()) != fresh.value("words", ordered_json()))
            documents(&now, label,
                      "the words of " + label + " are " + wordsOf(fresh) + ", and were " + wordsOf(old) +
                          "; whole payloads read as before");
    }
    static std::string shortened(const ordered_json& field)
    {
        const std::string value = field.contains("default") ? field["default"].dump() : "that of its parts";
        return value.size() > 40 ? value.substr(0, 37) + "..." : value;
    }
    static std::string wordsOf(const ordered_json& field)
    {
        return field.contains("words") ? field["words"].dump() : "none";
    }

    // Whether the fields of two classes are the same bytes.
    bool sameFields(const ordered_json& before, const ordered_json& now)
    {
        const std::pair<const ordered_json*, const ordered_json*> pair = {&before, &now};
        if (!m_Assumed.insert(pair).second)
            return true;
        const Fields old = fieldsOf(before);
        const Fields fresh = fieldsOf(now);
        bool isSame = old.size() == fresh.size();
        for (size_t i = 0; isSame && i < old.size(); ++i)
            isSame = sameWire(*old[i], *fresh[i]);
        m_Assumed.erase(pair);
        return isSame;
    }
    // Whether two fields are the same bytes. A record is by its name: a change within it is reported with it.
    bool sameWire(const ordered_json& before, const ordered_json& now)
    {
        const std::string old = textOf(before, "type");
        const std::string fresh = textOf(now, "type");
        const auto isList = [](const std::string& type) { return type == "list" || type == "map"; };
        if (old == "record" && fresh == "record")
        {
            const std::string was = textOf(before, "record");
            const std::string is = textOf(now, "record");
            return was == is || sameFields(*m_OldClasses.at(was), *m_NewClasses.at(is));
        }
        if (isList(old) && isList(fresh))
            return textOf(before, "count") == textOf(now, "count") && before.contains("key") == now.contains("key") &&
                   (!before.contains("key") || sameWire(before["key"], now["key"])) &&
                   sameWire(before["of"], now["of"]);
        if (const int size = rawSize(before), other = rawSize(now); size > 0 || other > 0)
            return size == other;
        if (old != fresh)
            return false;
        for (const char* const name : {"value", "length", "length_of", "rows", "across", "count_of"})
            if (before.value(name, ordered_json()) != now.value(name, ordered_json()))
                return false;
        if (old == "array")
            return sameWire(before["of"], now["of"]);
        if (old == "pair")
            return sameWire(before["of"][0], now["of"][0]) && sameWire(before["of"][1], now["of"][1]);
        return old != "table" || sameTable(before, now);
    }
    bool sameTable(const ordered_json& before, const ordered_json& now)
    {
        for (const char* const word : {"CountedRows", "SaidRows", "OwnRows"})
            if (hasWord(before, word) != hasWord(now, word))
                return false;
        const ordered_json& old = before["columns"];
        const ordered_json& fresh = now["columns"];
        bool isSame = old.size() == fresh.size();
        for (size_t i = 0; isSame && i < old.size(); ++i)
            isSame = textOf(old[i], "name") == textOf(fresh[i], "name") && sameWire(old[i], fresh[i]);
        return isSame;
    }
    // Bytes of raw data with a size of its own, or 0.
    static int rawSize(const ordered_json& json)
    {
        const std::string type = textOf(json, "type");
        return type == "uuid" ? 16 : type == "node" ? 6 : type == "bytes" ? json.value("length", 0) : 0;
    }

    // The classes that have the class as a record.
    std::vector<std::string> holders(const ordered_json& each, const ordered_json& document)
    {
        auto& all = m_Holders[&document];
        if (all.empty())
            for (const ordered_json& holder : document["classes"])
            {
                std::set<std::string> records;
                for (const ordered_json& field : holder["fields"])
                    collect(field, records);
                for (const std::string& record : records)
                    all[record].push_back(textOf(holder, "class"));
            }
        const auto found = all.find(textOf(each, "class"));
        return found == all.end() ? std::vector<std::string>() : found->second;
    }
    static void collect(const ordered_json& json, std::set<std::string>& records)
    {
        if (json.is_object() && json.contains("record"))
            records.insert(textOf(json, "record"));
        if (json.is_object() || json.is_array())
            for (const ordered_json& part : json)
                if (part.is_structured())
                    collect(part, records);
    }
    std::string holdersOf(const ordered_json* each)
    {
        if (!each)
            return "";
        const std::vector<std::string> all = holders(*each, m_Newer);
        std::string names;
        for (size_t i = 0; i < all.size() && i < kMostHolders; ++i)
            names += (i > 0 ? ", " : "") + all[i];
        if (all.size() > kMostHolders)
            names += " and " + std::to_string(all.size() - kMostHolders) + " more";
        return names.empty() ? "" : " It is in " + names + ".";
    }

    const ordered_json& m_Older;
    const ordered_json& m_Newer;
    Classes m_OldClasses;
    Classes m_NewClasses;
    std::map<const ordered_json*, std::map<std::string, std::vector<std::string>>> m_Holders;
    // Pairs of classes being compared, for records that hold themselves.
    std::set<std::pair<const ordered_json*, const ordered_json*>> m_Assumed;
    std::vector<Change> m_Changes;
};

} // namespace

std::vector<Change> schemaDifferences(const ordered_json& older, const ordered_json& newer)
{
    return Comparison(older, newer).run();
}

} // namespace tools
