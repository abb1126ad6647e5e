#include "tests/support/relations.h"

#include "dispatch/command_ids.h"

namespace test
{

namespace
{

// Takes the id so that a row with an unknown command does not compile.
std::string nameOf(unsigned short, const char* name)
{
    return name;
}

} // namespace

const CommandRelations& getCommandRelations()
{
    static const CommandRelations all = []
    {
        CommandRelations rows;
#define PARTY(Name, words) const char* const k##Name = words;
#define SENT(Class, Sender, Receiver)                                                                                  \
    rows.m_Directions.push_back({nameOf(command_id::Class, #Class), k##Sender, k##Receiver, false});
#define BETWEEN(Class, Party, Other)                                                                                   \
    rows.m_Directions.push_back({nameOf(command_id::Class, #Class), k##Party, k##Other, true});
#define ANSWER(Request, Class, Kind)                                                                                   \
    rows.m_Answers.push_back({nameOf(command_id::Request, #Request), nameOf(command_id::Class, #Class), Outcome::Kind});
#define UNSTATED(Class) rows.m_Unstated.push_back(nameOf(command_id::Class, #Class));
#include "dispatch/relations.def"
#undef PARTY
#undef SENT
#undef BETWEEN
#undef ANSWER
#undef UNSTATED
        return rows;
    }();
    return all;
}

const MessageRelations& getMessageRelations()
{
    static const MessageRelations all = []
    {
        MessageRelations rows;
#define ANSWER(Request, Class) rows.m_Answers.push_back({#Request, #Class, Outcome::Reply});
#define ALONE(Class) rows.m_Alone.push_back(#Class);
#include "packs/relations.def"
#undef ANSWER
#undef ALONE
        return rows;
    }();
    return all;
}

} // namespace test
