// Holds the headers of the vocabulary to what they say: every class has a comment, and the comment names the direction,
// the answers and the envelope that dispatch/relations.def, packs/relations.def and packs/messages.def state.
#include "tests/support/places.h"
#include "tests/support/relations.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace
{

// The lines of each header of the vocabulary.
std::map<std::string, std::vector<std::string>> readHeaders()
{
    std::map<std::string, std::vector<std::string>> headers;
    const std::filesystem::path root = std::filesystem::path(test::getTestsFolder()).parent_path();
    for (const char* folder : {"commands", "packs", "playerdata"})
        for (const auto& entry : std::filesystem::directory_iterator(root / folder))
            if (entry.path().extension() == ".h")
            {
                std::ifstream file(entry.path());
                std::vector<std::string>& lines = headers[folder + ('/' + entry.path().filename().string())];
                for (std::string line; std::getline(file, line);)
                    lines.push_back(line);
            }
    return headers;
}

// The comment directly before the declaration of each class, as one line; empty if there is none.
const std::map<std::string, std::string>& comments()
{
    static const std::map<std::string, std::string> all = []
    {
        std::map<std::string, std::string> found;
        const std::regex declaration(R"((?:class|struct) (?:COMMONGROUND_API )?(\w+)(?: final)?(?: : public \w+)?)");
        for (const auto& [header, lines] : readHeaders())
        {
            std::string comment;
            for (const std::string& line : lines)
            {
                if (line.starts_with("// "))
                {
                    comment += (comment.empty() ? "" : " ") + line.substr(3);
                    continue;
                }
                std::smatch match;
                if (std::regex_match(line, match, declaration))
                {
                    EXPECT_TRUE(found.emplace(match[1], comment).second) << header << ": " << match[1];
                }
                comment.clear();
            }
        }
        return found;
    }();
    return all;
}

bool isOfName(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// Whether the comment contains the whole name.
bool names(const std::string& comment, const std::string& name)
{
    for (size_t at = comment.find(name); at != std::string::npos; at = comment.find(name, at + 1))
    {
        const size_t end = at + name.size();
        if ((at == 0 || !isOfName(comment[at - 1])) && (end == comment.size() || !isOfName(comment[end])))
            return true;
    }
    return false;
}

std::string commentOf(const std::string& name)
{
    const auto place = comments().find(name);
    return place == comments().end() ? "" : place->second;
}

TEST(Vocabulary, EveryClassHasAComment)
{
    for (const auto& [name, comment] : comments())
        EXPECT_FALSE(comment.empty()) << name << ": its header has no comment before the class";
    // The headers were read: they declare every class that is sent.
    ASSERT_FALSE(tools::classTable().empty());
    for (const tools::ClassInfo& info : tools::classTable())
        EXPECT_EQ(comments().count(info.m_Name), 1u) << info.m_Name;
}

TEST(Vocabulary, TheCommentOfACommandStartsWithItsDirection)
{
    for (const test::Direction& row : test::getCommandRelations().m_Directions)
    {
        std::string start;
        if (row.m_Between && row.m_From == row.m_To)
            start = "between " + row.m_From + 's';
        else if (row.m_Between)
            start = "between " + row.m_From + " and " + row.m_To;
        else if (row.m_From.empty())
            start = "to the " + row.m_To;
        else if (row.m_To.empty())
            start = "from the " + row.m_From;
        else
            start = row.m_From + " to " + row.m_To;
        start.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(start.front())));
        EXPECT_TRUE(commentOf(row.m_Class).starts_with(start))
            << "the comment before " << row.m_Class << " does not start with \"" << start << "\"";
    }
}

// A class that answers several requests may name them in another way.
TEST(Vocabulary, TheCommentsOfRequestAndAnswerNameEachOther)
{
    std::vector<test::Answer> answers = test::getCommandRelations().m_Answers;
    const std::vector<test::Answer>& ofMessages = test::getMessageRelations().m_Answers;
    answers.insert(answers.end(), ofMessages.begin(), ofMessages.end());
    std::map<std::string, int> requests;
    for (const test::Answer& row : answers)
        ++requests[row.m_Answer];
    ASSERT_FALSE(answers.empty());
    for (const test::Answer& row : answers)
    {
        EXPECT_TRUE(names(commentOf(row.m_Request), row.m_Answer))
            << "the comment before " << row.m_Request << " does not name " << row.m_Answer;
        const bool several = requests[row.m_Answer] > 1;
        EXPECT_TRUE(several || names(commentOf(row.m_Answer), row.m_Request))
            << "the comment before " << row.m_Answer << " does not name " << row.m_Request;
    }
}

TEST(Vocabulary, TheCommentOfAMessageNamesItsEnvelope)
{
    int messages = 0;
    for (const tools::ClassInfo& info : tools::classTable())
        if (info.m_Family == tools::Family::kMessage)
        {
            ++messages;
            EXPECT_TRUE(names(commentOf(info.m_Name), info.m_Base)) << info.m_Name;
            // A message that is sent one way has no other envelope, and every comment contains the empty text.
            EXPECT_TRUE(commentOf(info.m_Name).find(info.m_OtherEnvelope) != std::string::npos) << info.m_Name;
        }
    EXPECT_GT(messages, 0);
}

TEST(Vocabulary, TheSizeOfAnArrayIsANamedConstant)
{
    int arrays = 0;
    for (const auto& [header, lines] : readHeaders())
        for (const std::string& line : lines)
        {
            // A member; not a comment, nor an initialiser.
            const size_t member = line.find(" m_");
            if (member == std::string::npos || line.find("//") < member)
                continue;
            const size_t end = line.find('=');
            for (size_t at = line.find('[', member); at < end && at + 1 < line.size(); at = line.find('[', at + 1))
            {
                ++arrays;
                EXPECT_EQ(line[at + 1], 'k') << header << ": " << line;
            }
        }
    EXPECT_GT(arrays, 0);
}

} // namespace
