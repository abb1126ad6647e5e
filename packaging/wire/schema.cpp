#include "packaging/wire/schema.h"

namespace wire
{

namespace
{

const char* wordOf(Tests tests)
{
    static constexpr std::pair<Tests, const char*> words[] = {
        {Untested, "Untested"},
        {ElementsUntested, "ElementsUntested"},
        {ElementsUntestedOnRead, "ElementsUntestedOnRead"},
        {UntestedOnRead, "UntestedOnRead"},
        {UntestedOnWrite, "UntestedOnWrite"},
        {LastElementDecides, "LastElementDecides"},
        {OnlyAboveZero, "OnlyAboveZero"},
    };
    for (const auto& [those, word] : words)
        if (those == tests)
            return word;
    return tests == Tests{} ? "" : "TestsOfItsOwn";
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
        all.push_back(wordOf({field.how.reading, field.how.writing}));
    all.push_back(places[static_cast<size_t>(field.how.into)]);
    all.push_back(keys[static_cast<size_t>(field.how.key)]);
    for (const Word* word : field.words)
        all.push_back(word->text);
    std::string words;
    for (const char* word : all)
        if (*word)
            words.append(words.empty() ? "" : " ").append(word);
    return words;
}

} // namespace wire
