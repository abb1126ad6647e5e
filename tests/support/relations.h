// The rows of dispatch/relations.def and packs/relations.def as tables. A row with an unknown command or party does not
// compile.
#pragma once

#include <string>
#include <vector>

namespace test
{

// Who sends a command to whom, in the words of the comments; an empty text for a party that the hosts choose.
struct Direction
{
    std::string m_Class;
    std::string m_From;
    std::string m_To;
    // Either of the two may be the sender.
    bool m_Between = false;
};

enum class Outcome
{
    Reply,
    Success,
    Failure
};

struct Answer
{
    std::string m_Request;
    std::string m_Answer;
    Outcome m_Outcome = Outcome::Reply;
};

struct CommandRelations
{
    std::vector<Direction> m_Directions;
    std::vector<Answer> m_Answers;
    std::vector<std::string> m_Unstated;
};

struct MessageRelations
{
    // The outcome is always a reply.
    std::vector<Answer> m_Answers;
    std::vector<std::string> m_Alone;
};

const CommandRelations& getCommandRelations();
const MessageRelations& getMessageRelations();

} // namespace test
