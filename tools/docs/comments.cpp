#include "tools/docs/comments.h"

#include "tools/class_headers.h"

#include <cctype>
#include <map>
#include <sstream>
#include <string_view>

namespace tools
{

namespace
{

// The word of letters, digits and underscores that starts here.
std::string wordAt(std::string_view text, size_t at)
{
    size_t end = at;
    while (end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '_'))
        ++end;
    return std::string(text.substr(at, end - at));
}

// By class, or by class and member: "CCmdServerEcho", "CCmdServerEcho m_Data". A comment is the lines right before what
// it describes, or the end of a member's line.
class Comments
{
public:
    Comments()
    {
        for (const char* const header : embedded::class_headers)
        {
            std::istringstream lines(header);
            for (std::string line; std::getline(lines, line);)
                add(line);
        }
    }

    std::string find(const std::string& name) const
    {
        const auto place = m_All.find(name);
        return place == m_All.end() ? "" : place->second;
    }

private:
    void add(const std::string& line)
    {
        static constexpr std::string_view kExported = " COMMONGROUND_API ";
        static constexpr std::string_view kMark = "// ";
        const size_t mark = line.find(kMark);
        if (mark != std::string::npos)
            m_Comment += (m_Comment.empty() ? "" : " ") + line.substr(mark + kMark.size());
        if (mark != std::string::npos && line.find_first_not_of(' ') == mark)
            return;
        const size_t member = line.find(" m_");
        const size_t exported = line.find(kExported);
        if (exported != std::string::npos && (line.starts_with("class ") || line.starts_with("struct ")))
        {
            m_Class = wordAt(line, exported + kExported.size());
            m_All.emplace(m_Class, m_Comment);
        }
        else if (!m_Comment.empty() && member < mark)
        {
            m_All.emplace(m_Class + " " + wordAt(line, member + 1), m_Comment);
        }
        m_Comment.clear();
    }

    std::map<std::string, std::string> m_All;
    std::string m_Class;
    std::string m_Comment;
};

const Comments& comments()
{
    static const Comments all;
    return all;
}

} // namespace

std::string commentOf(const std::string& className)
{
    return comments().find(className);
}

std::string commentOf(const std::string& className, const std::string& member)
{
    return comments().find(className + " " + member);
}

} // namespace tools
