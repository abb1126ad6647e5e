#include "packaging/wire/schema.h"

namespace wire
{

namespace
{

const char* testsOf(const Departures& how)
{
    static constexpr std::pair<Departures, const char*> words[] = {
        {Departures(), ""},
        {Untested, "Untested"},
        {ElementsUntested, "ElementsUntested"},
        {ElementsUntestedOnRead, "ElementsUntestedOnRead"},
        {UntestedOnRead, "UntestedOnRead"},
        {UntestedOnWrite, "UntestedOnWrite"},
        {LastElementDecides, "LastElementDecides"},
        {OnlyAboveZero, "OnlyAboveZero"},
    };
    for (const auto& [those, word] : words)
        if (those.reading == how.reading && those.writing == how.writing)
            return word;
    return "TestsOfItsOwn";
}

} // namespace

std::string wordsOf(const Field& field)
{
    static constexpr const char* places[] = {"",           "ClearedFirst",     "Appends", "Appends ThroughOneLocal",
                                             "SizedFirst", "IntoExistingSlots"};
    static constexpr const char* keys[] = {"", "Pairs", "KeyedByPosition", "KeyedBy"};
    static constexpr const char* rows[] = {"OwnRows", "SaidRows", "CountedRows"};
    std::vector<const char*> all;
    if (field.kind == Kind::kTable)
        all.push_back(rows[static_cast<size_t>(field.says)]);
    else
        all.push_back(testsOf(field.how));
    all.push_back(places[static_cast<size_t>(field.how.into)]);
    all.push_back(keys[static_cast<size_t>(field.how.key)]);
    all.insert(all.end(), field.words.begin(), field.words.end());
    std::string words;
    for (const char* word : all)
        if (*word)
            words.append(words.empty() ? "" : " ").append(word);
    return words;
}

} // namespace wire
